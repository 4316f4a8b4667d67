// Slow reference functions for paths.
#ifndef ZON_FUZZ_PATHS_MODEL_H
#define ZON_FUZZ_PATHS_MODEL_H

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

namespace model {

using Texts = std::vector<std::string>;

// The components of a path: "/a//b" is "/", "a/", "/", "b".
inline Texts Pieces(const std::string& path) {
  Texts pieces;
  for (std::size_t at = 0, end; at < path.size(); at = end) {
    end = std::min(path.find('/', at), path.size() - 1) + 1;
    pieces.push_back(path.substr(at, end - at));
  }
  return pieces;
}

inline std::string SlowNormalized(const std::string& path) {
  Texts kept;  // a later ".." cannot remove the first `fixed` pieces
  if (path[0] == '/') kept = {"/"};
  std::size_t fixed = kept.size();
  for (const std::string& piece : Pieces(path)) {
    if (piece == "/") continue;
    const std::string name = piece.substr(0, piece.find('/'));
    const std::size_t run = name.size() - name.find_last_not_of('.') - 1;
    const std::size_t dots = run - (run > 0 && run < name.size());
    const bool removesLast = dots == 2 && kept.size() > fixed;
    if (removesLast) kept.pop_back();
    if (dots == 2 && !removesLast) ++fixed;
    if (dots != 1 && !removesLast) kept.push_back(piece);
  }
  return std::accumulate(kept.begin(), kept.end(), std::string());
}
inline std::string SlowJoined(const std::string& base, const std::string& text) {
  return SlowNormalized(text[0] == '/' ? text : base + "/" + text);
}

// `anchor` is the absolute name of the parameter file.
inline std::string SlowResolved(std::string text, const std::string& anchor) {
  std::replace(text.begin(), text.end(), '\\', '/');
  if (text.empty() || text[0] == '/') return text;
  const Texts pieces = Pieces(anchor.size() > 1 ? anchor : "//");
  return SlowJoined(std::accumulate(pieces.begin(), pieces.end() - 1, std::string()), text);
}

inline std::string SlowWritten(std::string text, const std::string& anchor) {
  if (text[0] == '/') {
    const Texts from = Pieces(anchor), to = Pieces(SlowNormalized(text));
    std::size_t same = 0;
    while (same < std::min(from.size(), to.size()) && from[same] == to[same] &&
           to[same].back() == '/')
      ++same;
    const bool within = same + 1 == from.size() && same < to.size() && from[same] + "/" == to[same];
    text.clear();
    for (std::size_t i = same; i < from.size() && !within; ++i) text += "../";
    for (std::size_t i = same + within; i < to.size(); ++i) text += to[i];
  }
  std::replace(text.begin(), text.end(), '/', '\\');
  return "|" + text + "|";
}

}  // namespace model

#endif
