#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "twin/commands/commands.h"
#include "twin/documents/document.h"
#include "twin/documents/schemas.h"

namespace tavrohost {

void AddSchemaCommand(CLI::App& tool, int& /*status*/) {
    CLI::App* command =
        tool.add_subcommand("schema", "Print the JSON Schema of a kind of document");
    const auto name = std::make_shared<std::string>();
    command->add_option("name", *name, "Which one")
        ->required()
        ->check(CLI::IsMember(SchemaNames()));
    command->callback([name] { WriteOutput(SchemaText(*name)); });
}

}  // namespace tavrohost
