#include <lua.hpp>

#include "rows.h"

namespace bench {
namespace {

class Lua {
 public:
  static constexpr Format kFormat = Format::kLua;

  Lua() = default;
  ~Lua() {
    if (state_ != nullptr) lua_close(state_);
  }
  Lua(const Lua&) = delete;
  Lua& operator=(const Lua&) = delete;

  bool Load(const std::string& path) {
    state_ = luaL_newstate();
    return state_ != nullptr && luaL_dofile(state_, path.c_str()) == 0 && lua_istable(state_, 1);
  }
  void Read(Totals& totals) { ReadTop(totals); }
  double LookUp(const std::string& section, const std::string& keyword) {
    lua_getfield(state_, 1, section.c_str());
    lua_getfield(state_, -1, keyword.c_str());
    lua_rawgeti(state_, -1, 1);
    const double number = lua_tonumber(state_, -1);
    lua_settop(state_, 1);
    return number;
  }

 private:
  // Reads the value on top of the stack.
  void ReadTop(Totals& totals) {
    std::size_t length = 0;
    switch (lua_type(state_, -1)) {
      case LUA_TTABLE:
        lua_pushnil(state_);
        while (lua_next(state_, -2) != 0) {
          ReadTop(totals);
          lua_pop(state_, 1);
        }
        break;
      case LUA_TNUMBER:
        totals.Number(lua_tonumber(state_, -1));
        break;
      case LUA_TBOOLEAN:
        totals.Flag(lua_toboolean(state_, -1) != 0);
        break;
      default: {
        const char* const text = lua_tolstring(state_, -1, &length);
        totals.Text({text, length});
      }
    }
  }

  lua_State* state_ = nullptr;
};

const auto kRows = Rows<Lua>("lua")
                       .Load({"1MB", "10MB", "small", "settings"})
                       .Read({"1MB"})
                       .LookUp({"1MB"})
                       .Memory({"10MB"});

}  // namespace
}  // namespace bench
