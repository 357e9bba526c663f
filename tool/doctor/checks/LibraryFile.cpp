#include "tool/doctor/checks/LibraryFile.h"

#include <fmt/format.h>
#include <windows.h>

namespace tool::doctor {

bool CheckLibraryFile(const PeFile& image, const std::string& path, const LibraryFileTexts& texts, Checks& checks) {
    const auto bad = [&](size_t step, Problem problem, std::vector<std::string> places) {
        checks.push_back(Bad(texts.group, texts.prefix + libraryFileSteps[step], problem, std::move(places)));
        return false;
    };
    const auto good = [&](size_t step, std::vector<std::string> details) {
        checks.push_back(Good(texts.group, texts.prefix + libraryFileSteps[step], std::move(details)));
    };
    if (!image.IsThere()) {
        return bad(0, texts.missing, {path, std::to_string(ERROR_FILE_NOT_FOUND), texts.use});
    }
    good(0, {fmt::format("{}, {} bytes", path, image.Size())});
    if (!image.IsImage()) {
        return bad(1, texts.isNone, {path, "it does not begin as one does"});
    }
    if (image.Machine() != IMAGE_FILE_MACHINE_AMD64) {
        return bad(1, texts.ofOtherMachine, {path, image.MachineName()});
    }
    good(1, {image.MachineName()});
    if (!image.IsLibrary()) {
        return bad(2, texts.isNone, {path, "it is a program"});
    }
    if (image.Size() < image.ExpectedSize()) {
        return bad(2, texts.incomplete, {path, std::to_string(image.Size()), std::to_string(image.ExpectedSize())});
    }
    good(2, {});
    return true;
}

}  // namespace tool::doctor
