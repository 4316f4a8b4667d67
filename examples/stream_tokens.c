/* Reads a parameter file token by token, without a tree, and prints its outline:
 *
 *     stream_tokens FILE
 *
 * Exit status 1 if the file has an error, 2 if it cannot be opened. */
#include <stdio.h>

#include <zon.h>

static const char* kind_of(int token) {
  switch (token) {
    case 1000:
      return "nothing";
    case 1010:
      return "true";
    case 1011:
      return "false";
    case 1020:
      return "integer";
    case 1021:
      return "real";
    case 1030:
      return "string";
    default:
      return "file name";
  }
}

int main(int argc, char** argv) {
  void* reader = NULL;
  int depth = 0;
  int token;

  if (argc != 2 || zontLoadFile(argv[1], &reader) != 0) {
    fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return 2;
  }
  while ((token = zontNextToken(reader)) > 0) {
    const char* text = zontGetTokenString(reader);
    if (token == 101) {
      --depth;
    } else if (token == 100) {
      printf("%*s[%s]\n", 3 * depth++, "", text);
    } else if (token == 200) {
      printf("%*s%s\n", 3 * depth, "", text);
    } else {
      printf("%*s%s %s\n", 3 * depth + 3, "", kind_of(token), text);
    }
  }
  if (token < 0) {
    unsigned int line;
    unsigned int position;
    const char* message = zontGetError(reader, &line, &position);
    printf("%s:%u:%u: %s\n", argv[1], line, position, message);
  }
  zontDispose(&reader);
  return token == 0 ? 0 : 1;
}
