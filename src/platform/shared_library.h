// Loading a library at run time and finding its entry points by name.
#pragma once

#include <filesystem>
#include <string>

namespace tavro::platform {

// Owns the handle of a library loaded at run time. One object owns it at a time (move-only). The
// library itself stays loaded until the process ends, even when its owner is gone: objects that it
// handed out may still need its code.
class SharedLibrary {
  public:
    // Owns nothing.
    SharedLibrary() = default;
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&& other) noexcept;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary() = default;

    // Loads the library with this bare file name (ASCII, no directories) from the directory where
    // the running program lies, a link to it resolved, and from nowhere else; on Windows the
    // system's directory is searched after the program's. On failure the result is not loaded and
    // FailureReason() says why.
    static SharedLibrary Load(const std::string& fileName);

    // Loads the library from that file, wherever it lies; what it needs itself may lie beside it.
    // Fails like Load.
    static SharedLibrary LoadFrom(const std::filesystem::path& file);

    bool IsLoaded() const { return handle_ != nullptr; }

    // The file that a failed load tried, a colon, and the system's reason, as one line without its
    // line end; empty when loaded.
    const std::wstring& FailureReason() const { return failureReason_; }

    // The address of the exported symbol; null when there is none or nothing is loaded.
    void* Resolve(const char* symbol) const;

    // The exported function of this name as a pointer of type Function*; null like above.
    template <typename Function>
    Function* Resolve(const char* symbol) const {
        return reinterpret_cast<Function*>(Resolve(symbol));
    }

  private:
    // The system's handle, or null and the reason.
    SharedLibrary(void* handle, std::wstring failureReason);

    void* handle_ = nullptr;
    std::wstring failureReason_;
};

}  // namespace tavro::platform
