// Replays a fuzz target's inputs: every file named on the command line, or
// every file of a directory named there, once each. Built with g++ so the
// corpus runs in the sanitizer build without libFuzzer.
#include <stdint.h>
#include <stdio.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

static int replay_file(const std::filesystem::path &path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        fprintf(stderr, "%s: cannot read\n", path.c_str());
        return 1;
    }
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // An exactly sized copy, so that a read past the input is caught.
    uint8_t *copy = new uint8_t[bytes.size() ? bytes.size() : 1];
    std::copy(bytes.begin(), bytes.end(), copy);
    LLVMFuzzerTestOneInput(copy, bytes.size());
    delete[] copy;
    return 0;
}

int main(int argc, char **argv)
{
    int failures = 0;
    size_t runs = 0;

    for (int i = 1; i < argc; i++) {
        std::filesystem::path arg(argv[i]);
        std::vector<std::filesystem::path> files;
        if (std::filesystem::is_directory(arg)) {
            for (const auto &entry : std::filesystem::directory_iterator(arg))
                if (entry.is_regular_file())
                    files.push_back(entry.path());
            std::sort(files.begin(), files.end());
        } else {
            files.push_back(arg);
        }
        for (const auto &file : files) {
            failures += replay_file(file);
            runs++;
        }
    }
    fprintf(stderr, "replayed %zu inputs\n", runs);
    return failures != 0 || runs == 0;
}
