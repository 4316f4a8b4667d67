// Tested by tests/grammar_test.cpp and tests/scanner_test.cpp.
#include "reader/zonparser.h"

#include <typeinfo>

#include "base/zonarena.h"
#include "base/zonfiletext.h"
#include "reader/zonengine.h"
#include "reader/zonlexer.h"
#include "reader/zonsource.h"
#include "reader/zontreebuilder.h"
#include "tree/zonclob.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

struct CzonParser::Parts {
  Parts(CzonParser& parser, CyyInput& input, CyyStream* stream, zon::Arena& arena)
      : lexer(parser, input, stream, arena), builder(parser, lexer, arena) {}

  zon::Lexer lexer;
  zon::TreeBuilder builder;
};

CzonParser::CzonParser(CyyInput* input)
    : CyyParser(input), parts_(std::make_unique<Parts>(*this, Input(), GetStream(), GetArena())) {}

CzonParser::~CzonParser() = default;

int CzonParser::Parse(int keep) {
  // A derived class, or a source of the host, may ask for the token texts at any time.
  listsTokens_ = typeid(*this) != typeid(CzonParser) || GetStream() == nullptr || keep != 0;
  zon::TreeBuilder& builder = parts_->builder;
  const int failed = yyparse();
  if (failed == 0) {
    builder.ForgetTemporaries();  // the tree owns them now
  } else {
    builder.ForgetRoot();  // made before the parse failed after it
    builder.CollectGarbage();
  }
  if (keep == 0) ClearTokens();
  if (GetStream() != nullptr) {
    const bool isSuspect = parts_->lexer.IsSuspect() || builder.IsSuspect();
    if (isSuspect) zon::TextSource::TextOf(*GetStream()).MarkSuspect();
    GetStream()->Close();
  }
  if (failed != 0 && keep == 0) {
    builder.Abandon();
    GetArena().Clear();
    if (GetStream() != nullptr) GetStream()->Release();
  }
  parts_->lexer.Release();
  return failed;
}

int CzonParser::yyparse() {
  return zon::Engine<zon::TreeBuilder>(*this, parts_->lexer, parts_->builder, !listsTokens_).Run();
}

int CzonParser::yylex() {
  const int token = parts_->lexer.Next();
  if (token >= INTEGER) AddToken(parts_->lexer.Text());
  CountInput();
  return token;
}

// A derived scanner may deliver any token by this function, a number too.
void CzonParser::EndToken(const char* text) {
  parts_->lexer.SetText(text != nullptr ? text : "");
  AddToken(parts_->lexer.Text());
}

void CzonParser::KeepTemp(CzonNode* node) {
  parts_->builder.KeepTemporary(node);
}
void CzonParser::GarbageCollect() {
  parts_->builder.CollectGarbage();
}
void CzonParser::CheckUnique(CzonNamedNode* node) {
  parts_->builder.CheckUnique(node);
}
void CzonParser::CheckMulti() {
  parts_->builder.CheckMulti();
}

CzonParam* CzonParser::ParseStringParam(std::string& text) {
  CzonParam* clob = CzonClob::Parse(text);
  return clob != nullptr ? clob : new CzonString(text);
}

CzonTargetList* CzonParser::GetRoot() const {
  return parts_->builder.GetRoot();
}
