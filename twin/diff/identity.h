#pragma once

#include <string>
#include <string_view>

#include "library/json/json.h"
#include "simulator/host/host_type.h"
#include "twin/diff/rearrangement.h"

// By what the things of a host are recognised in another state of the host. Hosts are JSON here, as
// the host file has them with all their members.
namespace tavrohost {

using tavrolib::Json;
using tavrosim::HostType;

// Whether the member of that key holds a secret.
bool IsSecretMember(std::string_view key);

// Whether the member of that key counts what happens, and so differs from one look to the next.
bool IsCounterMember(std::string_view key);

// Whether the elements of the list are told from one another by what names them, not by place.
bool HasNamedElements(const HostType& list);

// What the element of a list is called by people: "192.0.2.20:3260" for a portal, "FCoE
// 10:00:02:00:5E:10:00:04" for a function. Empty where elements are known by their places only.
std::string NameOfElement(const HostType& element, const Json& value);

// Whether it is the type of an adapter, a port or a function: what a host consists of.
bool IsHostPart(const HostType& element);

// The way to a member of the struct, whose own way is `owner`: "tcpIp.address". The part that makes
// a function one of its kind is no step of the way.
std::string MemberPath(const std::string& owner, const HostType& type,
                       const tavrosim::HostMember& member);

// Finds the elements of the list `after` in the list `before`, both of the type `list`: adapters by
// the MACs of their functions, else by name; all else by what names it, however identifiers are
// written. Of several elements with one identity the first is the first. Arrays of a fixed size,
// and elements that nothing names, are matched by place.
ListOrigin OriginOf(const HostType& list, const Json& before, const Json& after);

}  // namespace tavrohost
