#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

// Changes to files that make them wrong.

inline std::string ContentOf(const std::filesystem::path& file) {
    std::string content(std::filesystem::file_size(file), '\0');
    std::ifstream(file, std::ios::binary).read(content.data(), static_cast<std::streamsize>(content.size()));
    return content;
}

inline void SetContent(const std::filesystem::path& file, const std::string& content) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    if (!stream.write(content.data(), static_cast<std::streamsize>(content.size())).flush()) {
        throw std::runtime_error("cannot be written: " + file.string());
    }
}

// Puts a text of the same length in the place of each `text` that ends with a zero. Throws when there is none.
inline void ReplaceText(const std::filesystem::path& file, const std::string& text, const std::string& other) {
    std::string content = ContentOf(file);
    const std::string ended = text + '\0';
    if (content.find(ended) == std::string::npos || text.size() != other.size()) {
        throw std::runtime_error(text + " does not stand in " + file.string());
    }
    for (size_t place = content.find(ended); place != std::string::npos; place = content.find(ended, place + 1)) {
        content.replace(place, text.size(), other);
    }
    SetContent(file, content);
}

// Makes the library one of 32 bits, as far as its header says.
inline void SetMachineOf32Bits(const std::filesystem::path& file) {
    std::string content = ContentOf(file);
    constexpr size_t placeOfHeader = 0x3C;
    const size_t header = static_cast<unsigned char>(content.at(placeOfHeader)) |
                          static_cast<size_t>(static_cast<unsigned char>(content.at(placeOfHeader + 1))) << 8U;
    content.at(header + 4) = '\x4C';
    content.at(header + 5) = '\x01';
    SetContent(file, content);
}
