#pragma once

#include <string>
#include <vector>

namespace tgx::test {

/// A box in points from the bottom left corner of its page.
struct Box {
  double left = 0, bottom = 0, right = 0, top = 0;
};

/// A word as a viewer that is not ours reads it off a page.
struct SeenWord {
  int page;  ///< from 1
  std::string text;
  Box box;
};

/// The words of a document in the order of pdftotext.
std::vector<SeenWord> WordsSeen(const std::string& pdf);

/// A piece of text over which a viewer that is not ours found a link to a page.
struct SeenLink {
  int page;  ///< from 1, as the target
  std::string text;
  int targetPage;
};

/// The links within a document, as pdftohtml finds them.
std::vector<SeenLink> LinksSeen(const std::string& pdf);

/// A link to an area of a page, as another viewer that is not ours has it and follows it.
struct FollowedLink {
  int page;  ///< from 1, as the target's
  Box box;
  int targetPage;
  Box target;
};

/// The links within a document that lead to areas of pages, in the order of mutool.
std::vector<FollowedLink> LinksFollowed(const std::string& pdf);

/// What a command prints; `{}` in it stands for the path of a file with these bytes. Throws if it fails.
std::string OutputOf(const std::string& command, const std::string& pdf);

}  // namespace tgx::test
