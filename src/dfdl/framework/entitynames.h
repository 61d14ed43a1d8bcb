#ifndef DFDL_FRAMEWORK_ENTITYNAMES_H
#define DFDL_FRAMEWORK_ENTITYNAMES_H

#include <cstdint>
#include <string_view>

inline constexpr int32_t ENTITY_UNKNOWN = -1;
inline constexpr int32_t ENTITY_CLASS = -2;  // a class of characters

// The character that an entity stands for, by the name between percent sign and semicolon. Only as many
// letters are looked at as tell the names of the standard apart: grammars in use rely on it.
int32_t EntityNames_characterOf(std::u16string_view name);

#endif
