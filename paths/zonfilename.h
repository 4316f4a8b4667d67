// File names as values.
#ifndef ZON_PATHS_ZONFILENAME_H
#define ZON_PATHS_ZONFILENAME_H

#include <string>

#include "tree/zonparam.h"

/** A file name. It is stored as given and resolved when asked for: a relative name is relative to
 *  the directory of the parameter file. */
class ZON_API CzonFilename : public CzonParam {
 public:
  CzonFilename() = default;
  explicit CzonFilename(const std::string& text);  ///< the name as given
  ~CzonFilename() override;

  CzonNode* CreateObj() override;
  int IsFilename() const override;

  /** Returns the path: each '\' becomes '/', a relative name is resolved against the directory of
   *  the parameter file, and that against the working directory at the time of the call. The buffer
   *  has room for at least 260 characters. Valid until the next call on this value or its end. */
  char* GetFilename() const override;
  const char* GetFilenameString() const override;  ///< as given

  /** Writes "|name|", each '/' as '\', an absolute name relative to the parameter file. */
  std::ostream& Write(std::ostream& out) const override;

  int GetSyntaxClass() const override;

  /** Replaces the name. `text` may be a part of the old one. */
  void SetFilename(std::string_view text);

 private:
  mutable zon::Text resolved_;  // the buffer of GetFilename: the path, padded with zeros
};

#endif
