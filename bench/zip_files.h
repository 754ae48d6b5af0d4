#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// The files that the zip benchmarks pack: the same bytes in every run.
struct BenchFile {
    std::string name;
    std::string content;
};

class Noise {
  public:
    std::uint32_t Next() { return state_ = state_ * 1664525 + 1013904223, state_ >> 8; }

  private:
    std::uint32_t state_ = 1;
};

// Two thirds words, as in templates and letters; the rest numbers in records, and noise, as in pictures.
inline std::string MixedContent(Noise& noise, std::size_t size, std::size_t kind) {
    static const char* const kWords[] = {"the ",    "agreement ", "party ", "shall ",    "of ", "REPEAT ",
                                         "answer ", "date ",      "and ",   "template ", "IF ", "END IF ",
                                         "\r\n",    "signed ",    "in ",    "witness "};
    std::string content;
    while (content.size() < size) {
        const std::uint32_t value = noise.Next();
        if (kind % 6 < 4) {
            content += kWords[value % 16];
            content += std::to_string(value % 7 == 0 ? value % 1000 : 0);
        } else if (kind % 6 == 4) {
            content.append(reinterpret_cast<const char*>(&value), 2).append(6, '\0');
        } else {
            content.append(reinterpret_cast<const char*>(&value), 3);
        }
    }
    content.resize(size);
    return content;
}

inline std::vector<BenchFile> MixedFiles(std::size_t count, std::size_t size) {
    Noise noise;
    std::vector<BenchFile> files;
    for (std::size_t i = 0; i < count; ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "%05u.bin", static_cast<unsigned>(i));
        files.push_back({name, MixedContent(noise, size, i)});
    }
    return files;
}
