#include "dfdl/framework/entitynames.h"

namespace {

// A name begins with `letters`. Those of a given `length` have just that many units; 0: any.
struct Entity {
    std::u16string_view letters;
    size_t length;
    int32_t character;
};

// The first that fits holds, so the more exact ones stand before those that take the rest.
constexpr Entity ENTITIES[] = {
    {u"NL", 0, ENTITY_CLASS}, {u"NU", 0, 0x00},        {u"NA", 0, 0x15},         {u"NB", 0, 0xA0},
    {u"NE", 0, 0x85},         {u"W", 0, ENTITY_CLASS}, {u"ES", 2, ENTITY_CLASS}, {u"ES", 0, 0x1B},
    {u"EO", 0, 0x04},         {u"EN", 0, 0x05},        {u"EM", 0, 0x19},         {u"ETB", 0, 0x17},
    {u"ET", 0, 0x03},         {u"ST", 0, 0x02},        {u"SI", 0, 0x0F},         {u"SY", 0, 0x16},
    {u"SU", 0, 0x1A},         {u"SP", 0, 0x20},        {u"SO", 2, 0x0E},         {u"SO", 0, 0x01},
    {u"AC", 0, 0x06},         {u"BE", 0, 0x07},        {u"BS", 0, 0x08},         {u"HT", 0, 0x09},
    {u"LF", 0, 0x0A},         {u"LS", 0, 0x2028},      {u"VT", 0, 0x0B},         {u"FF", 0, 0x0C},
    {u"FS", 0, 0x1C},         {u"CR", 0, 0x0D},        {u"CA", 0, 0x18},         {u"DL", 0, 0x10},
    {u"DE", 0, 0x7F},         {u"DC1", 0, 0x11},       {u"DC2", 0, 0x12},        {u"DC3", 0, 0x13},
    {u"DC", 0, 0x14},         {u"GS", 0, 0x1D},        {u"RS", 0, 0x1E},         {u"US", 0, 0x1F},
};

}  // namespace

int32_t EntityNames_characterOf(std::u16string_view name) {
    for (const Entity& entity : ENTITIES) {
        if (name.starts_with(entity.letters) && (entity.length == 0 || entity.length == name.size())) {
            return entity.character;
        }
    }
    return ENTITY_UNKNOWN;
}
