#include "program/program.h"

#include <SDL.h> // renames main where the platform needs it

int main(int, char**) { return runProgram(); }
