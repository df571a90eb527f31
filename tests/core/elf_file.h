#pragma once

#include <set>
#include <string>
#include <vector>

/// A shared library's file, of this machine's word size and byte order.
class ElfFile {
public:
    /// The file of a library that is loaded into this process, by its soname.
    static ElfFile of_loaded(const char* soname);

    /// Names that the library needs from elsewhere; weak ones, which it can do without, left out.
    std::set<std::string> imports() const;

    /// Names that the library gives to others.
    std::set<std::string> exports() const;

    /// Names of the functions at an address, given as its distance from where the library is
    /// loaded. There are several when the compiler found functions to be the same.
    std::set<std::string> functions_at(std::size_t distance) const;

    /// The library's own DT_SONAME.
    std::string soname() const;

private:
    explicit ElfFile(std::vector<char> bytes) : bytes_(std::move(bytes)) {}

    template <class T>
    const T* at(std::size_t offset) const;
    template <class Visit>
    void for_each_section(unsigned type, Visit visit) const;
    template <class Visit>
    void for_each_symbol(Visit visit) const;

    std::vector<char> bytes_;
};
