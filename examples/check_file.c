/* Prints every error and warning of parameter files: check_file [--rules] FILE...
   Checks only: no tree is made. With --rules, prints the rule of each report instead. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <zonx.h>

static void PrintReport(const zonxReport* report, void* context) {
  const size_t length = zonxFormatReport(report, NULL, 0);
  char* text = (char*)malloc(length + 1);
  (void)context;
  if (text == NULL) return;
  zonxFormatReport(report, text, length + 1);
  puts(text);
  free(text);
}

static void PrintRule(const zonxReport* report, void* context) {
  (void)context;
  puts(report->rule);
}

int main(int argc, char** argv) {
  const int onlyRules = argc > 1 && strcmp(argv[1], "--rules") == 0;
  int status = 0;
  int n;
  for (n = onlyRules ? 2 : 1; n < argc; ++n) {
    if (zonxLoadFile(argv[n], NULL, onlyRules ? PrintRule : PrintReport, NULL) != ZONX_OK)
      status = 1;
  }
  return status;
}
