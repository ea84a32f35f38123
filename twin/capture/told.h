#pragma once

#include <list>
#include <map>
#include <optional>
#include <string>

#include "library/json/json.h"
#include "simulator/answers/answer.h"
#include "simulator/answers/captured_answers.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/operations.h"
#include "twin/capture/operation_call.h"

namespace tavrohost {

// What a library has told in captured answers. A refusal tells nothing.
class Told {
  public:
    // Takes a JSON array of answers (see CaptureAnswers). Throws ShapeError where one is none.
    explicit Told(const tavrolib::Json& answers);

    // What the operation has filled in; `input` is its record, or a text.
    template <tavroapi::OperationCode Code>
    std::optional<tavroapi::OutputOf<Code>> By(const std::string& request) const {
        return Filled<tavroapi::OutputOf<Code>>(OperationCall(Code, request));
    }
    template <tavroapi::OperationCode Code, class Input>
    std::optional<tavroapi::OutputOf<Code>> By(const std::string& request, Input input) const {
        tavrolib::Call call = OperationCall(Code, request);
        if constexpr (std::same_as<Input, std::string>) {
            call.input = input.data();
        } else {
            call.input = &input;
        }
        return Filled<tavroapi::OutputOf<Code>>(call);
    }

    // What a query that is no operation has filled in, about what the call names besides.
    template <tavrolib::EntryPoint Entry>
    std::optional<tavrolib::FilledType<Entry>> By(tavrolib::Call call) const {
        call.entryPoint = Entry;
        return Filled<tavrolib::FilledType<Entry>>(call);
    }

    // All sessions of the function that were read, in the order in which they were.
    const std::list<tavroapi::SessionRecord>& Sessions(const std::string& request) const;

  private:
    template <class Record>
    std::optional<Record> Filled(const tavrolib::Call& call) const {
        const tavrosim::Answer* const answer = answers_.Find(call);
        if (answer == nullptr || answer->status != 0) {
            return std::nullopt;
        }
        Record record{};
        answer->FillOutput(call.OutputType(), &record);
        return record;
    }

    tavrosim::CapturedAnswers answers_;
    std::map<std::string, std::list<tavroapi::SessionRecord>> sessions_;
};

}  // namespace tavrohost
