#include <iostream>
#include <string>
#include <vector>

#include "tools/query/exchange.h"
#include "tools/query/query_run.h"
#include "tools/system/clock.h"
#include "tools/system/endpoint.h"

int main(int argc, char **argv) {
  using namespace cvl::tools;

  const SystemClock clock;
  const QueryNetwork network{&ResolveHost, [&clock](const Question &question, const Endpoint &peer,
                                                    std::chrono::milliseconds timeout) {
                               return Ask(question, peer, timeout, clock);
                             }};
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return RunQuery(arguments, network, std::cout, std::cerr);
}
