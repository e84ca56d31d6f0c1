// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include <cstddef>
#include <vector>

#include "NearestNames.h"
#include "Text.h"

namespace Lumivex::Consumer {
namespace {

bool IsOption(const std::string &word) { return !word.empty() && word[0] == '-'; }

const CLI::App &NamedCommand(const CLI::App &app) {
  const std::vector<CLI::App *> named = app.get_subcommands();
  return named.empty() ? app : *named.front();
}

std::string ExplainExtras(const CLI::App &app) {
  const std::vector<std::string> own = app.remaining();
  if (!own.empty() && !IsOption(own.front())) {
    std::vector<std::string> names;
    for (const CLI::App *pCommand : app.get_subcommands(nullptr)) {
      names.push_back(pCommand->get_name());
    }
    return "no command '" + own.front() + "'" + DidYouMean(own.front(), names);
  }
  std::vector<std::string> names;
  for (const CLI::Option *pOption : NamedCommand(app).get_options()) {
    names.push_back(pOption->get_name());
  }
  const std::vector<std::string> extras = app.remaining(true);
  std::string text = "not expected:";
  for (const std::string &word : extras) {
    text += " " + word;
  }
  return text + (extras.size() == 1 && IsOption(extras.front()) ? DidYouMean(extras.front(), names) : "");
}

std::string ExplainMismatch(const CLI::App &app, const std::string &words) {
  for (const CLI::Option *pOption : NamedCommand(app).get_options()) {
    if (pOption->count() > static_cast<std::size_t>(pOption->get_items_expected_max())) {
      return pOption->get_name() + " is given " + Counted(pOption->count(), "time");
    }
  }
  return words.find(" missing") == std::string::npos ? words : words.substr(0, words.find(':')) + " needs a value";
}

}  // namespace

std::string ExplainFault(const CLI::App &app, const CLI::ParseError &error) {
  std::string text = error.what();
  if (dynamic_cast<const CLI::ExtrasError *>(&error) != nullptr) {
    text = ExplainExtras(app);
  } else if (dynamic_cast<const CLI::ArgumentMismatch *>(&error) != nullptr) {
    text = ExplainMismatch(app, text);
  }
  return OneLine(text) + (text.back() == '?' ? " See" : "; see") + " lumivex --help";
}

}  // namespace Lumivex::Consumer
