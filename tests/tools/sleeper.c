/* Sleeps for so many seconds. */
#include <stdlib.h>
#include <unistd.h>

int main(int argc, char** argv) { return argc == 2 ? (int)sleep((unsigned)atoi(argv[1])) : 2; }
