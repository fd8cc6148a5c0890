#include <cstdio>

#include "tests/engine/errors/provocation.h"

// Prints docs/engine-errors.md.

int main() { std::fputs(zel::km::errors::document().c_str(), stdout); }
