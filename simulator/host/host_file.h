#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "library/json/findings.h"
#include "library/json/json.h"
#include "library/json/place.h"
#include "simulator/host/host.h"

namespace tavrosim {

// The host that a host file's text describes. Throws ShapeError that names the place: a syntax
// error, a format newer than HostFormat, a missing or unknown member, a value of the wrong kind, a
// host that contradicts itself (see `CheckHost`), or captured answers that are none (see
// simulator/answers/captured_answers.h).
Host HostFromText(std::string_view text);

// The same, which tells `findings` what it would throw. Where they are collected, the host is what
// could be read, and fit for a look only: nothing where not even that is possible, as after a
// syntax error. Of an answer that was captured only the first finding is told.
std::optional<Host> HostFromText(std::string_view text, tavrolib::Findings& findings);

// The text of a host file.
std::string TextFromHost(const Host& host);

// The host that stands in where there is no host file.
Host DefaultHost();

// Throws ShapeError where the host contradicts itself: two adapters of one name; a function of no
// or several kinds; a MAC, WWN or FCID that is none; an identifier that addresses two functions;
// an FCoE side that cannot be (see fcoe_check.h). `place` is where the host stands. What the host
// has captured is not looked at.
void CheckHost(const Host& host, const tavrolib::Place& place = {});

// The same, which tells `findings` what it would throw.
void CheckHost(const Host& host, const tavrolib::Place& place, tavrolib::Findings& findings);

// The host that plays the answers of another library, an array in the shape of a host file's
// `captured.answers`; `made` is the host that was made of them, and has captured nothing itself.
// Throws ShapeError where an answer is none, or the host contradicts itself.
Host CapturedHost(const Host& made, const tavrolib::Json& answers);

}  // namespace tavrosim
