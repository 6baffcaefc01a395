#include <iostream>
#include <string>
#include <vector>

#include "tools/art/art_run.h"

int main(int argc, char **argv) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return cvl::tools::RunArt(arguments, std::cerr);
}
