// Preloaded into a program with a library of its own, reports what is left of a secret in memory
// when both have ended: objects of a preloaded library go after all that were made later.
#include <cstdlib>
#include <fstream>

#include "memory_search.h"

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

const struct SearchAtEnd {
    SearchAtEnd() : secret(Variable("TAVRO_SECRET")), report(Variable("TAVRO_SECRET_REPORT")) {}
    ~SearchAtEnd() { secret_memory::ReportSearch(secret, report); }
    SearchAtEnd(const SearchAtEnd&) = delete;
    SearchAtEnd& operator=(const SearchAtEnd&) = delete;

    secret_memory::Secret secret;
    mutable std::ofstream report;
} searchAtEnd;

}  // namespace
