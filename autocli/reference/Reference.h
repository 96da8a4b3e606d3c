#pragma once

#include <string>
#include <vector>

#include "autocli/help/Explain.h"
#include "autocli/program/Tools.h"

/// Reference pages, made from the tree. Texts are as they were declared.
namespace autocli {

/// What a page says of a command, or of one side of the program.
struct Block {
  std::string title;
  bool isCommand;  ///< the title is a command's path
  std::string text;
  std::vector<Meaning> terms;
  std::string note;
};

/// What is said of one namespace; the root is one.
struct Page {
  std::string path;  ///< empty for the root
  std::string description;
  std::vector<std::vector<std::string>> synopsis;  ///< usages: a path, and what follows it
  std::vector<Block> blocks;
  std::vector<std::string> below;  ///< paths of the namespaces right below it
};

struct Document {
  std::string file;  ///< its name in the directory
  std::string text;
};

/// The page as a manual page in mdoc(7).
Document ManPage(const Page& page);

/// All pages as one file in Markdown.
Document MarkdownPage(const std::vector<Page>& pages);

/// The tool that writes them: `man DIR` or `markdown DIR`. A file is replaced as a whole or stays
/// as it was. A command whose specifications cannot be had is named in an error and has only its
/// description. Returns the exit status.
int RunReference(const ToolCall& call);

}  // namespace autocli
