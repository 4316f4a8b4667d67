// File names as values.
#ifndef ZON_PATHS_ZONFILENAME_H
#define ZON_PATHS_ZONFILENAME_H

#include <string>

#include "tree/zonparam.h"

/** A file name. It is kept exactly as it was given and turned into a path only when asked for: a
 *  relative name counts from the directory of the parameter file. */
class ZON_API CzonFilename : public CzonParam {
 public:
  CzonFilename() = default;
  explicit CzonFilename(const std::string& text);  ///< the name as it is written
  ~CzonFilename() override;

  CzonNode* CreateObj() override;
  int IsFilename() const override;

  /** The path: '\' turned into '/', a relative name resolved against the directory of the parameter
   *  file, which itself counts from the working directory of this moment. Any length, in a buffer
   *  with room for at least 260 characters. Valid until the next call on this value or its end. */
  char* GetFilename() const override;
  const char* GetFilenameString() const override;  ///< as it was given

  /** "|name|", with every '/' turned into '\'; an absolute name in its form relative to the
   *  parameter file. */
  std::ostream& Write(std::ostream& out) const override;
  int GetSyntaxClass() const override;

  /** Replaces the name; `text` may be a part of the present one. */
  void SetFilename(std::string_view text) { SetText(text, GetArena()); }

  /** The path alone; the buffer of GetFilename stays as it is. */
  std::string GetPath() const;

 private:
  mutable zon::Text resolved_;  // the buffer of GetFilename: the path, filled up with zeros
};

#endif
