#pragma once

#include <string>
#include <string_view>

#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/tcpip_records.h"
#include "xml/node.h"

namespace tavro {

// What the elements of a configuration file set. Each function takes the values of those children
// of `element` whose names it knows into a record that the caller made empty; other children are
// skipped, and one without a value leaves its field as it is. Values are narrowed unit by unit and
// not checked.

void TakeValues(const xml::XmlNode& element, tavroapi::InitiatorRecord& initiator);
void TakeValues(const xml::XmlNode& element, tavroapi::TcpIpSettings& settings);
void TakeValues(const xml::XmlNode& element, tavroapi::PortalRecord& portal);

// The login's `text2` becomes "No" unless the element says otherwise.
void TakeValues(const xml::XmlNode& element, tavroapi::TargetLoginRecord& login);

// Whether the target's status says that a session was there when the configuration was saved.
bool WasConnected(const xml::XmlNode& element);

}  // namespace tavro
