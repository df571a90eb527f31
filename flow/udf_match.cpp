#include "flow/udf_match.h"

#include <bcm/error.h>

#include <algorithm>
#include <iterator>

#include "core/trace.h"

uint8_t field_dbg = 0;

namespace {

/// The word that starts `first` bytes into the match; negative: that many bytes before it. Bytes
/// outside the match stay 0.
bcm_udf_s word_at(const of_flow_qualify_udf_s& udf, int64_t first)
{
    bcm_udf_s word = {};
    for (int i = 0; i < 4; ++i) {
        const int64_t place = first + i;
        if (place >= 0 && place < int64_t{udf.length}) {
            word.data[i] = udf.data[place];
            word.mask[i] = udf.mask[place];
        }
    }
    return word;
}

bool matches_anything(const bcm_udf_s& word)
{
    return std::all_of(std::begin(word.mask), std::end(word.mask),
                       [](uint8_t m) { return m == 0; });
}

} // namespace

int split_qualify_udf(const of_flow_qualify_udf_s& udf, std::vector<bcm_udf_s>& words)
{
    if (udf.length == 0 || udf.data == nullptr || udf.mask == nullptr)
        return BCM_E_PARAM;
    const int64_t lead = (udf.offset + 2) % 4;
    const int64_t count = (udf.length + lead + 3) / 4;
    for (int64_t i = 0; i < count; ++i) {
        bcm_udf_s word = word_at(udf, 4 * i - lead);
        word.offset = udf.offset + static_cast<uint32_t>(4 * i);
        if (!matches_anything(word))
            words.push_back(word);
    }
    return BCM_E_NONE;
}

void dump_hex_bytes(const uint8_t* data, int length)
{
    if (field_dbg == 1)
        vexolc::print_bytes(data, static_cast<unsigned>(std::max(length, 0)));
}
