#include "ctl/program.h"

int main(int count, char** words) { return ctl::run_program({words + 1, words + count}); }
