#include "platform/output.h"
#include "twin/tool.h"

int main(int argc, char** argv) {
    tavro::platform::PrepareStandardStreams();
    return tavrohost::RunTool(argc, argv);
}
