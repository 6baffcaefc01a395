#include "tools/query/query_run.h"

#include <ostream>

#include "tools/query/describe.h"
#include "tools/query/query_options.h"
#include "tools/system/arguments.h"

namespace cvl::tools {

namespace {

QueryStatus AskAll(const QueryOptions &options, const QueryNetwork &network, std::ostream &out,
                   std::ostream &err) {
  const auto address = network.Resolve(options.Host);
  if (!address) {
    err << "cvlquery: no IPv4 address is known for this host\n";
    return QueryNotAnswered;
  }
  QueryStatus status = QueryAnswered;
  for (const Question &question : QuestionsFor(options.Of, options.Over)) {
    const Endpoint peer{*address, options.Port.value_or(DefaultPort(question.Of))};
    const Report report = Describe(network.Ask(question, peer, options.Timeout), options.Shown);
    out << report.Text << std::flush;
    if (!report.Answered) {
      status = QueryNotAnswered;
    }
  }
  return status;
}

}  // namespace

QueryStatus RunQuery(const std::vector<std::string> &arguments, const QueryNetwork &network,
                     std::ostream &out, std::ostream &err) {
  try {
    const QueryOptions options = ParseQueryOptions(arguments);
    switch (options.What) {
      case QueryOptions::Task::ShowHelp:
        out << QueryHelp();
        return QueryAnswered;
      case QueryOptions::Task::ShowVersion:
        out << VersionLine("cvlquery");
        return QueryAnswered;
      case QueryOptions::Task::Ask:
        break;
    }
    return AskAll(options, network, out, err);
  } catch (const UsageError &error) {
    err << "cvlquery: " << error.what() << "\nTry cvlquery --help.\n";
    return QueryUsage;
  }
}

}  // namespace cvl::tools
