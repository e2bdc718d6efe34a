// SPDX-FileCopyrightText: the libmorrow_base authors
// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

struct Options;

/// Declares options of the command line, group by group; their values go to options.
void describe_output(CLI::App& app, Options& options);
void describe_mesh(CLI::App& app, Options& options);
void describe_style(CLI::App& app, Options& options);
void describe_decorations(CLI::App& app, Options& options);
void describe_charts(CLI::App& app, Options& options);

/// Throws CLI::ValidationError for options that do not go together.
void check_together(const Options& options);

/// Adds an option whose value is one of a few words. choices lives as long as the program.
template<class Value, class Chosen>
CLI::Option* add_choice(CLI::App& app, const std::string& name, const std::map<std::string, Value>& choices,
                        Chosen& chosen, const std::string& description)
{
  const auto choose = [&choices, &chosen](const std::string& word) { chosen = choices.at(word); };
  std::vector<std::string> words(choices.size());
  std::transform(choices.begin(), choices.end(), words.begin(),
                 [](const auto& choice) { return choice.first; });
  return app.add_option_function<std::string>(name, choose, description)->check(CLI::IsMember(words));
}
