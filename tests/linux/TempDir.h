#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace tarnwick::test {

// A fresh folder under the system's temp folder, removed with everything in it.
class TempDir {
  public:
    TempDir() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tarnwick-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

inline void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace tarnwick::test
