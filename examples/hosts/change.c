/* A host in C99: sets values of a file by path and saves it in place:

       change_c FILE PATH=VALUE ...

   A value is written as in a file; an empty one removes what the path leads to. */
#include <stdio.h>
#include <string.h>

#include <zon.h>
#include <zonx.h>

static void PrintReport(const zonxReport* report, void* context) {
  char text[2000]; /* a longer report is cut off */
  zonxFormatReport(report, text, sizeof text);
  fprintf((FILE*)context, "%s\n", text);
}

/* "Quay/Length=96.5"; changes the argument. */
static int Change(void* file, char* assignment) {
  char* value = strchr(assignment, '=');
  int status;
  if (value == NULL) return ZONX_BAD_ARGUMENT;
  *value++ = '\0';
  status = *value != '\0' ? zonxSetText(file, assignment, value) : zonxRemove(file, assignment);
  zonxReportPath(file, assignment, status, PrintReport, stdout);
  return status;
}

int main(int argc, char** argv) {
  void* file = NULL;
  int status;
  int n;
  if (argc < 2) return 2;
  status = zonxLoadFile(argv[1], &file, PrintReport, stdout);
  for (n = 2; n < argc && status == ZONX_OK; ++n) status = Change(file, argv[n]);
  if (status == ZONX_OK) status = zonxSave(file, NULL, ZONX_BACKUP, PrintReport, stdout);
  if (file != NULL) zonClose(&file);
  puts(zonxStatusText(status));
  return status == ZONX_OK ? 0 : 1;
}
