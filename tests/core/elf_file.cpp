#include "tests/core/elf_file.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

std::string path_of_loaded(const char* soname)
{
    void* handle = dlopen(soname, RTLD_NOW | RTLD_NOLOAD);
    link_map* map = nullptr;
    if (handle == nullptr || dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0)
        throw std::runtime_error(std::string(soname) + " is not loaded");
    return map->l_name;
}

} // namespace

ElfFile ElfFile::of_loaded(const char* soname)
{
    std::ifstream file(path_of_loaded(soname), std::ios::binary);
    return ElfFile({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
}

template <class T>
const T* ElfFile::at(std::size_t offset) const
{
    return reinterpret_cast<const T*>(&bytes_.at(offset));
}

template <class Visit>
void ElfFile::for_each_section(unsigned type, Visit visit) const
{
    const auto* header = at<ElfW(Ehdr)>(0);
    const auto* sections = at<ElfW(Shdr)>(header->e_shoff);
    for (unsigned i = 0; i < header->e_shnum; ++i) {
        if (sections[i].sh_type == type)
            visit(sections[i], at<char>(sections[sections[i].sh_link].sh_offset));
    }
}

template <class Visit>
void ElfFile::for_each_symbol(Visit visit) const
{
    for_each_section(SHT_DYNSYM, [&](const ElfW(Shdr) & section, const char* strings) {
        const auto* symbols = at<ElfW(Sym)>(section.sh_offset);
        for (std::size_t i = 1; i < section.sh_size / sizeof *symbols; ++i)
            visit(symbols[i], strings + symbols[i].st_name);
    });
}

std::set<std::string> ElfFile::imports() const
{
    std::set<std::string> names;
    for_each_symbol([&](const ElfW(Sym) & symbol, const char* name) {
        if (symbol.st_shndx == SHN_UNDEF && ELF32_ST_BIND(symbol.st_info) != STB_WEAK)
            names.insert(name);
    });
    return names;
}

std::set<std::string> ElfFile::exports() const
{
    std::set<std::string> names;
    for_each_symbol([&](const ElfW(Sym) & symbol, const char* name) {
        if (symbol.st_shndx != SHN_UNDEF)
            names.insert(name);
    });
    return names;
}

std::set<std::string> ElfFile::functions_at(std::size_t distance) const
{
    std::set<std::string> names;
    for_each_symbol([&](const ElfW(Sym) & symbol, const char* name) {
        if (symbol.st_shndx != SHN_UNDEF && symbol.st_value == distance)
            names.insert(name);
    });
    return names;
}

std::string ElfFile::soname() const
{
    std::string name;
    for_each_section(SHT_DYNAMIC, [&](const ElfW(Shdr) & section, const char* strings) {
        const auto* entries = at<ElfW(Dyn)>(section.sh_offset);
        for (std::size_t i = 0; i < section.sh_size / sizeof *entries; ++i) {
            if (entries[i].d_tag == DT_SONAME)
                name = strings + entries[i].d_un.d_val;
        }
    });
    return name;
}
