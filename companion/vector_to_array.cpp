#include "companion/vector_to_array.h"

#include <algorithm>

bool vexo_vector_to_array(const std::vector<uint8_t>& bytes, uint8_t* array, unsigned count)
{
    if (array == nullptr || bytes.size() < count) {
        return false;
    }
    std::copy_n(bytes.begin(), count, array);
    return true;
}
