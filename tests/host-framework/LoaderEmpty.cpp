// A library that loads and exports nothing that a service library must have.

extern "C" __attribute__((visibility("default"))) int somethingElse();

extern "C" int somethingElse() {
    return 1;
}
