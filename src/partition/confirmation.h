#pragma once

namespace tavro {

// Asks whether the changes are to be made; "y" and "Y" are yes, "n" and "N" no. Any other answer is
// complained about over and over, without another one being read, until the user breaks off or the
// output is lost (console::OutputLost).
bool AskConfirmation();

}  // namespace tavro
