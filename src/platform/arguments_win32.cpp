// Arguments reach the program exactly as typed. The start-up code asks this variable whether it is
// to replace arguments that hold "*" or "?" by the names of matching files.
extern "C" {
extern int _dowildcard;
int _dowildcard = 0;
}
