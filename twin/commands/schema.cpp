#include <CLI/CLI.hpp>
#include <string>

#include "twin/commands/commands.h"
#include "twin/documents/document.h"
#include "twin/documents/schemas.h"

namespace tavrohost {

void AddSchemaCommand(CLI::App& tool, int& /*status*/) {
    CLI::App* command =
        tool.add_subcommand("schema", "Print the JSON Schema of a kind of document");
    command
        ->add_option_function<std::string>(
            "name", [](const std::string& name) { WriteOutput(SchemaText(name)); }, "Which one")
        ->required()
        ->check(CLI::IsMember(SchemaNames()));
}

}  // namespace tavrohost
