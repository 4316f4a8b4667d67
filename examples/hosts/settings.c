/* A host in C99: reads settings, which have defaults, and reports what is wrong in the file with
 *  its
   place. */
#include <stdio.h>

#include <zon.h>
#include <zonx.h>

enum { MOST_HOURS = 24, MOST_WORKERS = 64 };

typedef struct Settings {
  char title[100];
  int workers;
  int isVerbose;
  double step;
  double hours[MOST_HOURS];
  size_t hourCount;
} Settings;

/* The context is a counter of errors. */
static void PrintReport(const zonxReport* report, void* context) {
  char text[2000]; /* a longer report is cut off */
  zonxFormatReport(report, text, sizeof text);
  puts(text);
  if (report->severity == ZONX_ERROR) ++*(int*)context;
}

/* A value that is missing keeps its default. Any other status is an error in the file. */
static void Require(void* file, const char* path, int status, int* errors) {
  if (status != ZONX_MISSING) zonxReportPath(file, path, status, PrintReport, errors);
}

static void RequireRange(void* file, const char* path, double value, double low, double high,
                         int* errors) {
  char message[200];
  void* node = NULL;
  if (value >= low && value <= high) return;
  if (zonxFind(file, path, &node) != ZONX_OK || zonxFind(node, "[1]", &node) != ZONX_OK) return;
  snprintf(message, sizeof message, "%s is %g, not from %g to %g", path, value, low, high);
  zonxReportNode(node, ZONX_ERROR, "range", message, "", PrintReport, errors);
}

static void ReadSettings(void* file, Settings* settings, int* errors) {
  const char* text;
  int status = zonxGetString(file, "Run/Title", &text);
  Require(file, "Run/Title", status, errors);
  if (status == ZONX_OK) snprintf(settings->title, sizeof settings->title, "%s", text);

  Require(file, "Run/Verbose", zonxGetBool(file, "Run/Verbose", &settings->isVerbose), errors);
  Require(file, "Run/Step", zonxGetDouble(file, "Run/Step", &settings->step), errors);
  RequireRange(file, "Run/Step", settings->step, 1, 3600, errors);
  Require(file, "Run/Workers", zonxGetInt(file, "Run/Workers", &settings->workers), errors);
  RequireRange(file, "Run/Workers", settings->workers, 1, MOST_WORKERS, errors);

  status =
      zonxGetDoubles(file, "Run/Report/Hours", settings->hours, MOST_HOURS, &settings->hourCount);
  Require(file, "Run/Report/Hours", status, errors);
  if (status != ZONX_OK) settings->hourCount = 0;
  if (settings->hourCount > MOST_HOURS) {
    void* node = NULL;
    zonxFind(file, "Run/Report/Hours[25]", &node);
    zonxReportNode(node, ZONX_ERROR, "too-many", "there are more than 24 hours", "", PrintReport,
                   errors);
  }
}

int main(int argc, char** argv) {
  Settings settings = {"untitled", 4, 0, 30.0, {0}, 0};
  void* file = NULL;
  int errors = 0;
  int status;
  if (argc != 2) return 2;
  status = zonxLoadFile(argv[1], &file, PrintReport, &errors);
  if (status == ZONX_OK) ReadSettings(file, &settings, &errors);
  if (file != NULL) zonClose(&file);
  if (status != ZONX_OK || errors > 0) return 1;
  printf("%s: %d workers, step %g s, %d hours\n", settings.title, settings.workers, settings.step,
         (int)settings.hourCount);
  return 0;
}
