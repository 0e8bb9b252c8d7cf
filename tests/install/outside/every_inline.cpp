// Emits every inline function of the headers, so that linking this fails when one of them calls
// something that the shared library does not export.

#include <krofx/krofx.h>

int main() {}
