#pragma once

namespace tavro {

// Prints the usage screen: title, the library's introduction and every advertised command form.
void ShowUsage();

// Prints the framed title and notice.
void ShowAbout();

}  // namespace tavro
