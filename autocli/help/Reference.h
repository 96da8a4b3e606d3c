#pragma once

#include <string>
#include <vector>

#include "autocli/base/Fault.h"
#include "autocli/help/Explain.h"
#include "autocli/line/Vocabulary.h"

/// Reference pages, made from the tree. Texts are as they were declared.
namespace autocli {

/// What a page says of a command, or of one side of the program.
struct Block {
  std::string title;
  bool isCommand;  ///< the title is a command's path
  std::string text;
  std::vector<Meaning> terms;
  std::string note;
  std::vector<Meaning> examples = {};
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

/// The pages of all that a line can name, the root's first. A command whose specifications cannot
/// be had becomes one of the faults and has only its description.
std::vector<Page> ReferencePages(const Vocabulary& vocabulary, std::vector<Fault>& faults);

}  // namespace autocli
