#include "simulator/model/serve.h"

#include <memory>

#include "library/calls/refusals.h"
#include "simulator/answers/answer.h"
#include "simulator/answers/captured_answers.h"
#include "simulator/answers/result_records.h"
#include "simulator/model/inventory.h"
#include "simulator/model/model.h"

namespace tavrosim {
namespace {

using tavrolib::Call;
using tavrolib::EntryPoint;

const OperationModel* ModelOf(const Call& call) {
    return call.entryPoint == EntryPoint::DoOperation ? FindModel(call.operation.value_or(0))
                                                      : nullptr;
}

// What the model of the host tells. Counters are told as they stand.
Outcome ReadModel(const Host& host, const Call& call) {
    if (call.entryPoint != EntryPoint::DoOperation) {
        return AnswerQuery(host, call);
    }
    const OperationModel* const model = ModelOf(call);
    if (model == nullptr) {
        return tavrolib::UnknownOperation(call.operation.value_or(0));
    }
    const auto read = model->read != nullptr ? model->read : model->tellCounters;
    return read(host, call.request.value_or(""), call.input, call.output);
}

// The same into another record.
Outcome ReadModelInto(void* output, const Host& host, const Call& call) {
    Call other = call;
    other.output = output;
    return ReadModel(host, other);
}

Outcome Play(const Answer& answer, const Host& host, const Call& call,
             const ResultRecords& records) {
    const auto before = records.copy(call.output);
    const auto now = records.copy(call.output);
    const Outcome former = ReadModelInto(before.get(), *host.asCaptured, call);
    const Outcome current = ReadModelInto(now.get(), host, call);
    const bool isRefusal = answer.status != 0;
    if (former.status != current.status ||
        (isRefusal && !records.isSame(before.get(), now.get()))) {
        return ReadModel(host, call);
    }
    if (isRefusal || !current.IsDone()) {
        answer.FillOutput(call.OutputType(), call.output);
        return answer.AsOutcome();
    }
    const auto captured = records.copy(call.output);
    answer.FillOutput(call.OutputType(), captured.get());
    records.merge(captured.get(), before.get(), now.get(), call.output);
    return answer.AsOutcome();
}

}  // namespace

bool ChangesHost(const Host& host, const Call& call) {
    const OperationModel* const model = ModelOf(call);
    return model != nullptr && model->change != nullptr &&
           !(IsCaptured(host) && model->tellCounters != nullptr);
}

Outcome ServeReading(const Host& host, const Call& call) {
    if (host.captured != nullptr && host.asCaptured != nullptr) {
        const ResultRecords* const records = ResultRecordsOf(call);
        const Answer* const answer = records == nullptr ? nullptr : host.captured->Find(call);
        if (answer != nullptr) {
            return Play(*answer, host, call, *records);
        }
    }
    return ReadModel(host, call);
}

Outcome ServeCall(Host& host, const Call& call) {
    return ChangesHost(host, call)
               ? ModelOf(call)->change(host, call.request.value_or(""), call.input, call.output)
               : ServeReading(host, call);
}

}  // namespace tavrosim
