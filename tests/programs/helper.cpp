// A library with one function.
extern "C" int HelperAnswer();

extern "C" int HelperAnswer() {
    return 42;
}
