#include "Modules.h"

#include <dlfcn.h>
#include <link.h>
#include <strings.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

#include "Call.h"

namespace fs = std::filesystem;

namespace win32 {

namespace {

struct Search {
    const char* file;
    std::string nameInList;
    bool isFound = false;
};

// Read byte by byte where the thread sanitizer does not look: the loader holds a lock of its own while it shows its
// list, which the sanitizer does not know, and would see a race with the thread that closes the library later.
[[clang::no_sanitize("thread")]] std::string CopyName(const char* name) {
    std::string copy;
    for (; *name != '\0'; ++name) {
        copy += *name;
    }
    return copy;
}

// The program's name is empty in the loader's list.
int LookAtModule(dl_phdr_info* info, size_t /*size*/, void* data) {
    auto& search = *static_cast<Search*>(data);
    const std::string name = CopyName(info->dlpi_name);
    const fs::path path = !name.empty() ? name : ProgramPath();
    search.isFound = ::strcasecmp(path.filename().c_str(), search.file) == 0 || path == search.file;
    if (search.isFound) {
        search.nameInList = name;
    }
    return search.isFound ? 1 : 0;
}

HMODULE ReferToLoaded(const std::string& nameInList, int flags = 0) {
    void* const library = ::dlopen(nameInList.empty() ? nullptr : nameInList.c_str(), RTLD_LAZY | RTLD_NOLOAD | flags);
    if (library == nullptr) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    return static_cast<HMODULE>(library);
}

// Looked at while the loader changes nothing: the library may just be freed by another thread.
struct NameSearch {
    const void* library;
    std::optional<std::string> nameInList;
};

int LookForName(dl_phdr_info* /*info*/, size_t /*size*/, void* data) {
    auto& search = *static_cast<NameSearch*>(data);
    for (const link_map* module = _r_debug.r_map; module != nullptr; module = module->l_next) {
        if (module == search.library) {
            search.nameInList = module->l_name;
        }
    }
    return 1;
}

const link_map* ModuleAt(const void* address) {
    Dl_info info{};
    void* module = nullptr;
    return ::dladdr1(address, &info, &module, RTLD_DL_LINKMAP) != 0 ? static_cast<const link_map*>(module) : nullptr;
}

void CheckFile(const std::string& path) {
    if (!fs::is_regular_file(path)) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    std::array<char, 4> magic{};
    std::ifstream(path, std::ios::binary).read(magic.data(), magic.size());
    if (std::string_view(magic.data(), magic.size()) != "\177ELF") {
        throw Failure{ERROR_BAD_EXE_FORMAT};
    }
}

// The error code for a message of the loader, which gives no code.
LONG ErrorOfLoader() {
    const std::string_view text = ::dlerror();
    if (text.find("undefined symbol") != std::string_view::npos) {
        return ERROR_PROC_NOT_FOUND;
    }
    return text.find("cannot open shared object file") != std::string_view::npos ? ERROR_MOD_NOT_FOUND
                                                                                 : ERROR_BAD_EXE_FORMAT;
}

}  // namespace

HMODULE ReferByFile(const char* file) {
    if (file == nullptr) {
        return ReferToLoaded({});
    }
    Search search{file, {}};
    ::dl_iterate_phdr(LookAtModule, &search);
    if (!search.isFound) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    return ReferToLoaded(search.nameInList);
}

HMODULE ReferByAddress(const void* address) {
    const link_map* const module = ModuleAt(address);
    if (module == nullptr) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    return ReferToLoaded(module->l_name);
}

HMODULE Load(const std::string& path) {
    CheckFile(path);
    void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw Failure{ErrorOfLoader()};
    }
    return static_cast<HMODULE>(library);
}

void Release(HMODULE library) {
    ::dlclose(library);
}

void* ExportOf(HMODULE library, const char* name) {
    if (library == nullptr) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    void* const address = ::dlsym(library, name);
    const link_map* const module = address != nullptr ? ModuleAt(address) : nullptr;
    return static_cast<const void*>(module) == static_cast<const void*>(library) ? address : nullptr;
}

size_t CountModules() {
    size_t count = 0;
    const auto countOne = [](dl_phdr_info* /*info*/, size_t /*size*/, void* data) {
        ++*static_cast<size_t*>(data);
        return 0;
    };
    ::dl_iterate_phdr(countOne, &count);
    return count;
}

std::string PathOf(HMODULE library) {
    NameSearch search{library, {}};
    ::dl_iterate_phdr(LookForName, &search);
    if (!search.nameInList) {
        throw Failure{ERROR_MOD_NOT_FOUND};
    }
    return !search.nameInList->empty() ? *search.nameInList : ProgramPath();
}

void Pin(HMODULE library) {
    Release(ReferToLoaded(static_cast<const link_map*>(static_cast<const void*>(library))->l_name, RTLD_NODELETE));
}

std::string ProgramPath() {
    return fs::read_symlink("/proc/self/exe").string();
}

}  // namespace win32
