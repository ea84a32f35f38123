#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "library/calls/call.h"
#include "library/json/findings.h"
#include "library/json/json.h"

namespace tavrosim {

struct Answer;

// What an answer to a call is found by: entry point, operation, identifier, adapter, port and
// input. Identifiers, also WWNs in the input of FCoE operations, are compared as the model does
// (see NormalIdentifier). Of the input of ReadSession only the target and the session's number
// count, and ExportAdapterSettings is answered as ReadAdapterSettings is. The call's input must be
// there if the operation has one.
std::string AnswerKey(const tavrolib::Call& call);

// What a host file has captured of another library, as it stands there: the library's answers to
// calls that only read, and the host that was made of them. It is never changed.
class CapturedAnswers {
  public:
    // Reads {"answers": [...], "host": {...}}; the host is left to its reader. Throws ShapeError
    // that names the place of an unknown or missing member, and of an answer that is none, is for
    // a call that identifies nothing to read, or does not fit the call's records.
    explicit CapturedAnswers(const tavrolib::Json& captured, const tavrolib::Place& place = {});
    // The same, which tells `findings` what it would throw, of an answer the first.
    CapturedAnswers(const tavrolib::Json& captured, const tavrolib::Place& place,
                    tavrolib::Findings& findings);
    ~CapturedAnswers();
    CapturedAnswers(const CapturedAnswers&) = delete;
    CapturedAnswers& operator=(const CapturedAnswers&) = delete;

    // The answer to a call with the same key (see AnswerKey); null when there is none, and the
    // first one where there are several. The result lives as long as the answers.
    const Answer* Find(const tavrolib::Call& call) const;

    // The object as it was read.
    const tavrolib::Json& AsJson() const { return *json_; }

  private:
    void Read(const tavrolib::Place& place, tavrolib::Findings& findings);
    void Add(const tavrolib::Json& answer, const tavrolib::Place& place);

    std::unique_ptr<const tavrolib::Json> json_;
    std::vector<Answer> answers_;
    std::unordered_map<std::string, std::size_t> index_;  // of the answers, by what they are for
};

}  // namespace tavrosim
