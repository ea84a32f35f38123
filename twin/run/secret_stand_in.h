#pragma once

#include <cstdint>
#include <set>
#include <string>

// What a command gives a twin is stored in a file and compared; its secrets are not.
namespace tavrohost {

// Puts a text that tells nothing in the place of each secret in the input of the operation, and
// wipes the secret. It is the same text in the place of every secret, and none of `known`, which
// holds the twin's own secrets: a secret among those stays, so that logins end as they would.
// `input` is a record of the operation's type, or null. An operation that is unknown has none.
void ReplaceSecrets(std::uint32_t operation, void* input, const std::set<std::string>& known);

// Whether the input of the operation has a place for secrets.
bool TakesSecrets(std::uint32_t operation);

}  // namespace tavrohost
