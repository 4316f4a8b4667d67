#include "host.h"

#include <pthread.h>
#include <unistd.h>

namespace host {

void (*onMessage)(const char* text) = nullptr;
void (*onReport)() = nullptr;
int AtWork::count = 0;

namespace {

Texts messages;
Texts reports;

struct Word {
  std::string text;
  Word* next;
};
std::vector<Word*> words;  // freed with the report

void* NewWord(std::string text, void* rest) {
  words.push_back(new Word{std::move(text), static_cast<Word*>(rest)});
  return words.back();
}

struct Folder {
  Folder() {
    path = std::filesystem::temp_directory_path() / "zon-test-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) std::abort();
  }
  ~Folder() {
    if (getpid() == owner) std::filesystem::remove_all(path);
  }
  std::string path;
  pid_t owner = getpid();
};

const char* KindOf(const CzonNode& value) {
  constexpr const char* kKinds[] = {"other ", "other ", "other ",  "other ",  "other ", "other ",
                                    "int ",   "real ",  "bool ",   "string ", "file ",  "default",
                                    "subst ", "other ", "unknown", "undef"};
  const int kind = value.GetSyntaxClass();
  if (value.IsClob()) return "clob ";
  return kind == kZonFilename && !value.IsFilename() ? "date " : kKinds[kind];
}

}  // namespace

Texts Messages() {
  return std::exchange(messages, {});
}
Texts Reports() {
  return std::exchange(reports, {});
}

std::string Heard() {
  std::string heard = std::to_string(zonGetErrorGlb());
  for (const std::string& message : Messages()) heard += " " + message;
  return heard;
}

std::chrono::seconds Seconds(int seconds) {
  const char* factor = std::getenv("ZON_PATIENCE");
  return std::chrono::seconds(seconds * (factor != nullptr ? std::atoi(factor) : 1));
}

int LowestFreeFile() {
  const int file = dup(0);
  close(file);
  return file;
}

bool OnSmallStack(void* (*body)(void*)) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024);
  pthread_t thread;
  const bool started = pthread_create(&thread, &attributes, body, nullptr) == 0;
  pthread_attr_destroy(&attributes);
  return started && pthread_join(thread, nullptr) == 0;
}

std::string FolderPath() {
  static const Folder folder;
  return folder.path;
}

std::string WriteFile(const std::string& name, const std::string& content) {
  std::string path = FolderPath() + "/" + name;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
  return path;
}

std::string ReadFile(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

std::string Timeless(const std::string& path) {
  std::string text = ReadFile(path);
  for (std::size_t at; (at = text.find("// Created")) != std::string::npos;) {
    text.erase(at, text.find('\n', at) + 1 - at);
  }
  return text;
}

Texts Split(const std::string& list) {
  std::istringstream in(list);
  Texts texts;
  for (std::string text; std::getline(in, text, '~');) texts.push_back(text);
  return texts;
}

void* Load(const std::string& content) {
  return zonLoadFile(WriteFile("load.zon", content).c_str(), 0);
}

std::string Show(const CzonNode* node) {
  if (node == nullptr) return "null";
  std::string text;
  std::string remark = node->GetRemark().empty() ? "" : "{" + node->GetRemark() + "}";
  if (node->IsParam()) {
    const std::string value = static_cast<const CzonParam*>(node)->GetText();
    return KindOf(*node) + value + remark;
  }
  if (node->IsDefaultDef()) text += "default ";
  text += node->GetName();
  const auto* named = static_cast<const CzonNamedNode*>(node);
  if ((named->GetFlags() & CzonNamedNode::kMulti) != 0) text += "()";
  if (node->GetInstanceNo() > 1) text += "<" + std::to_string(node->GetInstanceNo()) + ">";
  text += remark + (node->IsKeyword() ? "(" : "{");
  const char* separator = "";
  for (unsigned n = 1; n <= node->GetNoNodes(); ++n) {
    text += separator + Show(node->NodeByNum(n));
    separator = node->IsKeyword() ? ", " : " ";
  }
  return text + (node->IsKeyword() ? ")" : "}");
}

std::string Facts(void* node) {
  const std::pair<char, int (*)(void*)> kinds[] = {
      {'R', zonIsTarget},     {'S', zonIsSection},       {'K', zonIsKeyword},
      {'P', zonIsParam},      {'N', zonIsNumeric},       {'I', zonIsInt},
      {'F', zonIsFloat},      {'D', zonIsDouble},        {'B', zonIsBool},
      {'T', zonIsString},     {'L', zonIsFilename},      {'U', zonIsUndefinedPar},
      {'f', zonIsDefaultPar}, {'i', zonNumericIsIntType}};
  std::ostringstream text;
  text << zonGetSyntaxClass(node) << ' ';
  for (const auto& [letter, test] : kinds) {
    if (test(node) != 0) text << letter;
  }
  const std::size_t before = messages.size();
  text << ' ' << zonGetInt(node) << ' ' << zonGetDouble(node) << ' ' << zonGetFloat(node) << ' '
       << zonGetBool(node) << " '" << zonGetString(node) << "' " << messages.size() - before;
  messages.resize(before);
  return text.str();
}

std::string SyntaxError(void* handle) {
  unsigned line = 0;
  unsigned position = 0;
  const std::string message = zonGetSyntaxErr(handle, &line, &position, nullptr);
  if (message.empty()) return {};
  return std::to_string(line) + ":" + std::to_string(position) + " " + message;
}

}  // namespace host

extern "C" {

#ifdef ZON_COVERAGE
// What a process has reached is written down when it exits, so here an abort is an exit.
void abort() noexcept {
  std::exit(134);
}
#endif

void MessageHook(const char* text) {
  const host::AtWork mark;
  host::messages.emplace_back(text);
  if (host::onMessage != nullptr) host::onMessage(text);
}

void ReportHook(const char* pattern, int severity, void* arguments) {
  const host::AtWork mark;
  std::string text = std::to_string(severity) + ": ";
  const auto* word = static_cast<host::Word*>(arguments);
  for (; *pattern != '\0'; ++pattern) {
    if (*pattern != '%' || word == nullptr) {
      text += *pattern;
      continue;
    }
    text += word->text;
    word = word->next;
  }
  host::reports.push_back(text);
  for (const host::Word* used : host::words) delete used;
  host::words.clear();
  if (host::onReport != nullptr) host::onReport();
}

void* ReportArgString(const char* text, void* rest) {
  const host::AtWork mark;
  return host::NewWord(text, rest);
}
void* ReportArgInt(int value, void* rest) {
  const host::AtWork mark;
  return host::NewWord(std::to_string(value), rest);
}

}  // extern "C"
