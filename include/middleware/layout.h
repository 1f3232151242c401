// The layout of the middleware's structures as tables, checked when they are compiled.
//
// The middleware was built with its own compiler: a field that moves by one byte corrupts records silently. Every
// structure therefore has a specialization of Layout that lists its members in order, with the offsets that the
// middleware uses. It compiles only when the compiler agrees about every offset, and when the members that are listed
// take up every byte of the structure exactly once. The tables also name each field's Java constant and its meaning:
// the program `record_layouts` makes the Java field enums and docs/record-layouts.md from them.
//
// Tables are for the compiler and for that program. The library carries none of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>

namespace tavro {

enum class FieldType : std::uint8_t { kUint8, kUint16, kUint32, kInt16, kChar, kStructure };

enum class FieldUse : std::uint8_t {
    kValue,    // a number or text; of a structure, what its fields say
    kFlags,    // a word of bits, or a number that reads better in hexadecimal
    kReserved, // the middleware's own bytes, which the library leaves alone
    kView,     // one way to read bytes that other views share
};

// One member of a structure.
struct Field {
    const char* name;
    std::uint16_t offset; // from the start of the structure
    std::uint16_t width;  // of all elements
    std::uint16_t count;  // elements of an array; 1 when it is none
    FieldType type;       // of one element
    FieldUse use;
    const Field* members; // of a structure: its own fields
    std::size_t member_count;
    const char* java;    // name of the Java constant; of a structure, what its fields' names begin with
    const char* label;   // short name for people; of a structure, what its fields' labels begin with
    const char* meaning; // more about it: range, term of the standard
    const char* unit;    // of a number, as the workstation's importer stores it; empty where none is known
    std::uint32_t view;  // of a view: the value of the field that selects it
};

// The fields of a structure, in the order of their offsets. Specializations stand next to the structures.
template <class Structure>
struct Layout;

template <class Structure>
struct LayoutOf {
    using Type = Structure;
};

template <class Element>
constexpr FieldType field_type() {
    if constexpr (std::is_same_v<Element, std::uint8_t>) {
        return FieldType::kUint8;
    } else if constexpr (std::is_same_v<Element, std::uint16_t>) {
        return FieldType::kUint16;
    } else if constexpr (std::is_same_v<Element, std::uint32_t>) {
        return FieldType::kUint32;
    } else if constexpr (std::is_same_v<Element, std::int16_t>) {
        return FieldType::kInt16;
    } else if constexpr (std::is_same_v<Element, char>) {
        return FieldType::kChar;
    } else {
        return FieldType::kStructure;
    }
}

template <class Member>
constexpr Field make_field(const char* name, std::uint16_t offset, FieldUse use, const char* java, const char* label,
                           const char* meaning, const char* unit, std::uint32_t view) {
    using Element = std::remove_extent_t<Member>;
    Field field = {};
    field.name = name;
    field.offset = offset;
    field.width = sizeof(Member);
    field.count = std::is_array_v<Member> ? std::extent_v<Member> : 1;
    field.type = field_type<Element>();
    field.use = use;
    field.java = java;
    field.label = label;
    field.meaning = meaning;
    field.unit = unit;
    field.view = view;
    if constexpr (field_type<Element>() == FieldType::kStructure) {
        field.members = Layout<Element>::fields;
        field.member_count = std::size(Layout<Element>::fields);
    }
    return field;
}

// Whether the fields take up all bytes up to `size`, each once. Views that begin together share their bytes.
template <std::size_t N>
constexpr bool complete(const Field (&fields)[N], std::size_t size) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < N; ++i) {
        const bool shares = i > 0 && fields[i].use == FieldUse::kView && fields[i - 1].use == FieldUse::kView &&
                            fields[i].offset == fields[i - 1].offset;
        if (shares ? fields[i].width != fields[i - 1].width : fields[i].offset != end) {
            return false;
        }
        end = static_cast<std::size_t>(fields[i].offset) + fields[i].width;
    }
    return end == size;
}

} // namespace tavro

// Rows of a table; `Type` is the structure there. The function around each is called by the compiler alone.
#define TAVRO_ROW(OFFSET, MEMBER, USE, JAVA, LABEL, MEANING, UNIT, VIEW)                                               \
    [] {                                                                                                               \
        static_assert(offsetof(Type, MEMBER) == (OFFSET), #MEMBER " is not at offset " #OFFSET);                       \
        return tavro::make_field<decltype(Type::MEMBER)>(#MEMBER, OFFSET, tavro::FieldUse::USE, JAVA, LABEL, MEANING,  \
                                                         UNIT, VIEW);                                                  \
    }()
#define TAVRO_FIELD(OFFSET, MEMBER, JAVA, LABEL, MEANING) TAVRO_ROW(OFFSET, MEMBER, kValue, JAVA, LABEL, MEANING, "", 0)
#define TAVRO_FLAGS(OFFSET, MEMBER, JAVA, LABEL, MEANING) TAVRO_ROW(OFFSET, MEMBER, kFlags, JAVA, LABEL, MEANING, "", 0)
// A number with a unit. The library passes the number on unchanged: a TV may count in another unit.
#define TAVRO_AMOUNT(OFFSET, MEMBER, JAVA, LABEL, UNIT, MEANING)                                                       \
    TAVRO_ROW(OFFSET, MEMBER, kValue, JAVA, LABEL, MEANING, UNIT, 0)
// A structure inside: what the names and labels of its fields begin with, if anything.
#define TAVRO_PART(OFFSET, MEMBER, JAVA, LABEL) TAVRO_ROW(OFFSET, MEMBER, kValue, JAVA, LABEL, "", "", 0)
// A member of a union: its name, and the value that selects it.
#define TAVRO_VIEW(OFFSET, MEMBER, LABEL, VALUE) TAVRO_ROW(OFFSET, MEMBER, kView, "", LABEL, "", "", VALUE)
#define TAVRO_RESERVED(OFFSET, MEMBER) TAVRO_ROW(OFFSET, MEMBER, kReserved, "", "", "", "", 0)

// The size of a structure, and the proof that its table is complete. A structure without padding can be zeroed,
// compared and handed to Java as the bytes that it is.
#define TAVRO_COMPLETE(TYPE, SIZE)                                                                                     \
    static_assert(sizeof(TYPE) == (SIZE), #TYPE);                                                                      \
    static_assert(std::is_trivially_copyable_v<TYPE> && std::is_standard_layout_v<TYPE>, #TYPE);                       \
    static_assert(std::has_unique_object_representations_v<TYPE>, #TYPE " has padding");                               \
    static_assert(tavro::complete(tavro::Layout<TYPE>::fields, SIZE), "the table of " #TYPE " has a gap or an "        \
                                                                      "overlap")
