#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "tavroapi/record.h"

namespace tavroapi {

// What `TAVROAPI_GetLastErrorMessage` tells of the most recent failure; any text may be empty.
struct ErrorRecord {
    std::uint32_t code = 0;
    std::wstring message;
    std::wstring action;
    std::wstring additional;
    std::wstring details;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"code", &ErrorRecord::code}, Field{"message", &ErrorRecord::message},
                     Field{"action", &ErrorRecord::action},
                     Field{"additional", &ErrorRecord::additional},
                     Field{"details", &ErrorRecord::details});
    }
};

// One adapter of the host. Its name holds the model designation and is its key in further queries.
struct AdapterRecord {
    std::string name;
    std::uint32_t number = 0;
    std::list<std::string> portNames;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"name", &AdapterRecord::name}, Field{"number", &AdapterRecord::number},
                     Field{"portNames", &AdapterRecord::portNames});
    }
};

// The protocol of a function; every value other than the first two is treated as iSCSI where it is
// shown.
enum FunctionType : std::uint32_t { EthernetFunction = 0, FcoeFunction = 1, IscsiFunction = 2 };

// First of the two records of a port's function: the text that requests address it by, the address
// text that listings show, and its number on the adapter.
struct FunctionAddress {
    std::string keyText;
    std::string addressText;
    std::uint32_t functionNumber = 0;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"keyText", &FunctionAddress::keyText},
                     Field{"addressText", &FunctionAddress::addressText},
                     Field{"functionNumber", &FunctionAddress::functionNumber});
    }
};

// Second of the two records of a port's function: key text, type (see `FunctionType`) and a further
// identifying text.
struct FunctionIdentity {
    std::string keyText;
    std::uint32_t functionType = 0;
    std::string secondText;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"keyText", &FunctionIdentity::keyText},
                     Field{"functionType", &FunctionIdentity::functionType},
                     Field{"secondText", &FunctionIdentity::secondText});
    }
};

}  // namespace tavroapi
