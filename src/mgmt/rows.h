#pragma once

#include <cstddef>
#include <string>

#include "mgmt/message.h"
#include "tavroapi/record.h"

namespace tavro {

// A row of a display: the label's message and the member that it shows.
template <class Record>
struct Row {
    MessageId label;
    std::string Record::*value;
};

// Shows the rows in the order of the table.
template <class Record, std::size_t Count>
void ShowRows(const Record& record, const Row<Record> (&rows)[Count]) {
    for (const Row<Record>& row : rows) {
        ShowMessage(row.label, record.*row.value, Layout::Row);
    }
}

// A row of a display of texts that have no names: the label's message and the text's position,
// counted from 0.
struct TextRow {
    MessageId label;
    std::size_t position;
};

// Shows the rows in the order of the table.
template <std::size_t Count, std::size_t... Secrets, std::size_t Rows>
void ShowRows(const tavroapi::TextRecord<Count, Secrets...>& record, const TextRow (&rows)[Rows]) {
    for (const TextRow& row : rows) {
        ShowMessage(row.label, record.texts.at(row.position), Layout::Row);
    }
}

}  // namespace tavro
