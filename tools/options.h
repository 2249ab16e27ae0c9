// What verbs add to the command line, so that they need not know the library
// that reads it: verbs, arguments and options of each kind, and those that
// several verbs share. Values and what they stand in must outlive the parsing.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "headless_player.h"
#include "parsed_option.h"

namespace vexel::tools {

// The program itself stands for the verbs' parent.
CLI::App* AddVerb(CLI::App* app, const std::string& name, const std::string& help);
// What is printed behind the help.
void SetFooter(CLI::App* verb, const std::string& text);
// What the verb does when it was named.
void SetRun(CLI::App* verb, std::function<void()> run);
// A verb whose words are all taken by a program of this installation, help
// included.
void AddProgramVerb(CLI::App* app, const std::string& name, const std::string& help,
                    const std::string& program);

// A text that may be left out, or not; `name` without a dash is an argument.
// The help calls it `type`, or TEXT if that is empty.
CLI::Option* AddText(CLI::App* verb, const std::string& name, const std::string& type,
                     std::string* text, const std::string& help);
CLI::Option* AddNeededText(CLI::App* verb, const std::string& name, const std::string& type,
                           std::string* text, const std::string& help);
CLI::Option* AddFlag(CLI::App* verb, const std::string& name, bool* flag, const std::string& help);
// Refuses the option together with any of the others.
void Exclude(CLI::Option* option, std::initializer_list<CLI::Option*> others);
bool IsGiven(const CLI::Option* option);
std::string NameOf(const CLI::Option* option);

// -I, again and again.
void AddFolderOption(CLI::App* verb, std::vector<std::string>* folders);

// The movie, which each verb of it takes first.
void AddMovieArgument(CLI::App* verb, std::string* path);

// --size and --quality.
void AddViewOptions(CLI::App* verb, ViewOptions* view);

// --format.
void AddFormatOption(CLI::App* verb, ViewOptions* view);

// --trace; `kinds` gets bits of TraceKind.
void AddTraceOption(CLI::App* verb, int* kinds);

}  // namespace vexel::tools
