// Linked into every program and library of the build that is asked which lines a test executes.
// Every basic block that a process runs leaves a mark in a file, which survives however the process
// ends. One file for each program or library, in the folder that COVERAGE_FOLDER names while
// compiling; beside it stand the addresses of the blocks.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

unsigned char* marks = nullptr;
std::uint32_t blocks = 0;

// The name tells libraries of the same file name apart, as long as they differ in their number of
// blocks.
std::string FileOf(const void* address, const char* ending) {
    Dl_info info{};
    dladdr(address, &info);
    std::string name = info.dli_fname;
    name.erase(0, name.rfind('/') + 1);
    return std::string(COVERAGE_FOLDER "/") + name + "-" + std::to_string(blocks) + ending;
}

}  // namespace

// Called once for each object file, always with the same range.
extern "C" void __sanitizer_cov_trace_pc_guard_init(std::uint32_t* start, std::uint32_t* stop) {
    if (start == stop || *start != 0) {
        return;
    }
    blocks = static_cast<std::uint32_t>(stop - start);
    for (std::uint32_t i = 0; i < blocks; ++i) {
        start[i] = i + 1;
    }
    const std::string path = FileOf(start, ".marks");
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0) {
        return;
    }
    struct stat status {};
    if (fstat(file, &status) == 0 &&
        (status.st_size == static_cast<off_t>(blocks) || ftruncate(file, blocks) == 0)) {
        void* const mapped = mmap(nullptr, blocks, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        marks = mapped == MAP_FAILED ? nullptr : static_cast<unsigned char*>(mapped);
    }
    fchmod(file, 0666);
    close(file);
}

extern "C" void __sanitizer_cov_trace_pc_guard(const std::uint32_t* guard) {
    if (marks != nullptr && *guard != 0 && marks[*guard - 1] == 0) {
        marks[*guard - 1] = 1;
    }
}

// Pairs of an address and its flags, in the order of the guards.
extern "C" void __sanitizer_cov_pcs_init(const std::uintptr_t* begin, const std::uintptr_t* end) {
    static bool isWritten = false;
    if (isWritten || begin == end) {
        return;
    }
    isWritten = true;
    const std::string path = FileOf(begin, ".blocks");
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        return;
    }
    Dl_info info{};
    dladdr(begin, &info);
    const auto base = reinterpret_cast<std::uintptr_t>(info.dli_fbase);
    if (std::FILE* const file = std::fopen(path.c_str(), "w")) {
        std::fprintf(file, "%s\n", info.dli_fname);
        for (const std::uintptr_t* pair = begin; pair < end; pair += 2) {
            std::fprintf(file, "%zx\n", static_cast<std::size_t>(*pair - base));
        }
        std::fclose(file);
    }
}
