// The value and the parser (RFC 8259). Neither recurses with the document: the text comes from a
// server that deserves no trust, and two megabytes of "[" would be two million calls deep.
//
// Where a recursive-descent parser has one function per production and the call stack remembers
// what is open, this one has a loop and two stacks of its own:
//
//     {"a":[1,2,    open_    {} []         containers whose end has not come
//                   values_  1 2           finished values of all open containers, flat
//                   keys_    "a"           keys of all open objects, flat
//
// A container knows where its values begin on the flat stack. Its end takes them all off at once,
// so that a list is allocated once, at its size, and an open bracket costs a few bytes.
#include "cloud/json/json.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <exception>
#include <iterator>
#include <limits>
#include <utility>

namespace {

template <typename T>
const T& SharedEmpty() {
    static const T empty{};
    return empty;
}

}  // namespace

JsonValue::JsonValue(Members members) : payload_(std::make_unique<Members>(std::move(members))) {}

JsonValue::JsonValue(const JsonValue& other) noexcept {
    try {
        copyFrom(other);
    } catch (const std::exception&) {
        *this = JsonValue();
    }
}

JsonValue::~JsonValue() {
    if (isNested()) releaseNested();
}

bool JsonValue::boolean() const {
    const bool* boolean = std::get_if<bool>(&payload_);
    return boolean != nullptr && *boolean;
}

double JsonValue::number() const {
    const double* number = std::get_if<double>(&payload_);
    return number != nullptr ? *number : 0.0;
}

const std::string& JsonValue::string() const {
    const std::string* string = std::get_if<std::string>(&payload_);
    return string != nullptr ? *string : SharedEmpty<std::string>();
}

const JsonValue::Elements& JsonValue::elements() const {
    const Elements* elements = std::get_if<Elements>(&payload_);
    return elements != nullptr ? *elements : SharedEmpty<Elements>();
}

const JsonValue::Members& JsonValue::members() const {
    const auto* members = std::get_if<std::unique_ptr<Members>>(&payload_);
    return members != nullptr ? **members : SharedEmpty<Members>();
}

JsonValue::Members* JsonValue::object() {
    auto* members = std::get_if<std::unique_ptr<Members>>(&payload_);
    return members != nullptr ? members->get() : nullptr;
}

bool JsonValue::isFilled() const {
    return !elements().empty() || !members().empty();
}

// True when a child has children itself. Everything else is destroyed by its own members in two
// steps at most, so that only values three levels deep and more take the long way below.
bool JsonValue::isNested() const {
    if (tag() == JsonTag::array) {
        return std::any_of(elements().begin(), elements().end(),
                           [](const JsonValue& element) { return element.isFilled(); });
    }
    if (tag() == JsonTag::object) {
        return std::any_of(members().begin(), members().end(),
                           [](const auto& member) { return member.second.isFilled(); });
    }
    return false;
}

JsonValue& JsonValue::lastChild() {
    return array() != nullptr ? array()->back() : std::prev(object()->end())->second;
}

void JsonValue::dropLastChild() {
    // Whoever drops a child has looked into it already; its destructor need not do so again.
    lastChild().payload_.emplace<std::monostate>();
    if (array() != nullptr) {
        array()->pop_back();
    } else {
        object()->erase(std::prev(object()->end()));
    }
}

// Takes the value apart from the back, one level at a time, in constant memory: a destructor that
// needed memory could fail. This is pointer reversal (Deutsch, Schorr, Waite): a stack is not
// needed where the path back can be kept in the places that were just emptied on the way down.
//
//     down:  parent   current{.., child}     the child's place takes the parent in,
//            current' = child                parent' = current
//     up:    current is empty                parent's last place gives back the grandparent,
//            current' = parent               and is empty like the child that stood there
void JsonValue::releaseNested() noexcept {
    JsonValue parent;
    JsonValue current = std::move(*this);
    for (;;) {
        while (current.isFilled() && !current.lastChild().isNested())
            current.dropLastChild();
        if (current.isFilled()) {
            JsonValue child = std::move(current.lastChild());
            current.lastChild().payload_.swap(parent.payload_);
            parent.payload_.swap(current.payload_);
            current.payload_.swap(child.payload_);
        } else if (parent.isFilled()) {
            current.payload_.swap(parent.payload_);
            parent.payload_.swap(current.lastChild().payload_);
        } else {
            return;
        }
    }
}

// Breadth first with a list of what is still to be copied, instead of by recursion. Children are
// made null first and filled later. They stay where they are, because nobody adds to a container
// that has once been given its children: a vector is sized once, a map's nodes never move.
void JsonValue::copyFrom(const JsonValue& source) {
    struct Open {
        const JsonValue* from;
        JsonValue* to;
    };
    std::vector<Open> open{{&source, this}};
    while (!open.empty()) {
        const auto [from, to] = open.back();
        open.pop_back();
        switch (from->tag()) {
            case JsonTag::null:
                break;
            case JsonTag::boolean:
                to->payload_ = from->boolean();
                break;
            case JsonTag::number:
                to->payload_ = from->number();
                break;
            case JsonTag::string:
                to->payload_ = from->string();
                break;
            case JsonTag::array: {
                auto& copies = to->payload_.emplace<Elements>(from->elements().size());
                for (std::size_t i = 0; i < copies.size(); ++i)
                    open.push_back({&from->elements()[i], &copies[i]});
                break;
            }
            case JsonTag::object: {
                auto& copies =
                    *to->payload_.emplace<std::unique_ptr<Members>>(std::make_unique<Members>());
                for (const auto& [key, value] : from->members()) {
                    const auto copy = copies.try_emplace(copies.end(), key);
                    open.push_back({&value, &copy->second});
                }
                break;
            }
        }
    }
}

namespace {

// Whether an unsigned number that no double holds is too large rather than too small:
// `std::from_chars` says "out of range" for both. The power of ten of its first significant digit
// tells, to within one, from where that digit and the point stand:
//
//     0.0001e9     digit at 5, point at 1     10^(9 - 4)
//     12300e-9     digit at 0, point at 5     10^(-9 + 5)
//
// One more or less does not matter where doubles end hundreds of powers away on either side.
// An exponent that not even 64 bits hold decides by its sign alone: no document has digits enough
// to make up for it.
bool IsTooLarge(std::string_view number) {
    const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
    std::string_view power = number.substr(std::min(mark + 1, number.size()));
    if (power.starts_with('+')) power.remove_prefix(1);
    std::int64_t exponent = 0;
    const auto read = std::from_chars(power.data(), power.data() + power.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) return !power.starts_with('-');

    const std::string_view digits = number.substr(0, mark);
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<std::int64_t>(digits.find_first_of("123456789"));
    return exponent > first - point;
}

// What `strtod` makes of a run of number characters, without calling it: some C libraries take
// minutes for two million digits, and all of them ask the locale for the decimal point. RFC 8259,
// section 6, is stricter (no leading plus or zero, digits on both sides of the point); `strtod`
// stops at the first character that does not fit and is content with what came before it, and so is
// `from_chars`, but for a leading sign that it takes once and only as a minus.
double ReadNumber(std::string_view run) {
    const bool isNegative = run.starts_with('-');
    if (isNegative || run.starts_with('+')) run.remove_prefix(1);
    if (run.starts_with('-')) return 0.0;

    double magnitude = 0.0;
    const auto read = std::from_chars(run.data(), run.data() + run.size(), magnitude);
    if (read.ec == std::errc::result_out_of_range) {
        const bool isHuge = IsTooLarge({run.data(), read.ptr});
        magnitude = isHuge ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return isNegative ? -magnitude : magnitude;
}

// HEXDIG of section 7, in both cases; -1 for anything else.
constexpr int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// One UTF-16 code unit as UTF-8 (RFC 3629, section 3), each by itself:
//
//     0000-007F    0xxxxxxx
//     0080-07FF    110xxxxx 10xxxxxx
//     0800-FFFF    1110xxxx 10xxxxxx 10xxxxxx
//
// The halves of a surrogate pair so become three bytes each, which no decoder of UTF-8 takes;
// whoever turns them into wide text joins them again (base/text.h).
void AppendCodeUnit(std::string& utf8, unsigned unit) {
    if (unit < 0x80) {
        utf8.push_back(static_cast<char>(unit));
        return;
    }
    if (unit < 0x800) {
        utf8.push_back(static_cast<char>(0xC0U | (unit >> 6)));
    } else {
        utf8.push_back(static_cast<char>(0xE0U | (unit >> 12)));
        utf8.push_back(static_cast<char>(0x80U | ((unit >> 6) & 0x3FU)));
    }
    utf8.push_back(static_cast<char>(0x80U | (unit & 0x3FU)));
}

// ws of section 2.
constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

constexpr bool IsNumberCharacter(char c) {
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

class Parser {
  public:
    explicit Parser(std::string_view text) : cursor_(text.data()), end_(cursor_ + text.size()) {}

    // JSON-text = ws value ws, and nothing behind it (section 2).
    JsonValue Document() {
        if (!ReadRoot()) return JsonValue();
        SkipBlanks();
        return cursor_ == end_ ? std::move(values_.back()) : JsonValue();
    }

  private:
    // After each step either a value must follow, or one is complete and a separator may.
    enum class Step { failed, valueNext, valueDone };
    struct Container {
        std::size_t firstValue;
        bool isObject;
    };

    bool ReadRoot() {
        Step step = Step::valueNext;
        do {
            step = step == Step::valueNext ? ReadValue() : ReadSeparator();
        } while (step != Step::failed && !(step == Step::valueDone && open_.empty()));
        return step != Step::failed;
    }

    // Section 3. The first character tells the kind; what is none of these must be a number.
    Step ReadValue() {
        SkipBlanks();
        if (cursor_ == end_) return Step::failed;
        switch (*cursor_) {
            case '"': {
                std::string string;
                return ReadString(string) ? Done(std::move(string)) : Step::failed;
            }
            case '[':
            case '{':
                return Open();
            case 't':
                return Take("true") ? Done(true) : Step::failed;
            case 'f':
                return Take("false") ? Done(false) : Step::failed;
            case 'n':
                return Take("null") ? Done() : Step::failed;
            default:
                return ReadNumberRun();
        }
    }

    // What may follow a value inside a container: the value-separator or the container's own end
    // (sections 4 and 5). A comma demands another value, so that "[1,]" is refused.
    Step ReadSeparator() {
        SkipBlanks();
        if (Take(",")) return open_.back().isObject ? ReadKey() : Step::valueNext;
        return Take(open_.back().isObject ? "}" : "]") ? Close() : Step::failed;
    }

    // begin-array or begin-object, and its end at once when it is empty.
    Step Open() {
        const bool isObject = *cursor_++ == '{';
        open_.push_back({values_.size(), isObject});
        SkipBlanks();
        if (Take(isObject ? "}" : "]")) return Close();
        return isObject ? ReadKey() : Step::valueNext;
    }

    Step Close() {
        const Container container = open_.back();
        open_.pop_back();
        const auto first = values_.begin() + static_cast<std::ptrdiff_t>(container.firstValue);
        JsonValue closed =
            container.isObject
                ? JsonValue(TakeMembers(first))
                : JsonValue(JsonValue::Elements(std::make_move_iterator(first),
                                                std::make_move_iterator(values_.end())));
        values_.erase(first, values_.end());
        return Done(std::move(closed));
    }

    // Section 4 leaves open what repeated names mean: here the last one wins. The hint makes
    // members that come in order cost no search.
    JsonValue::Members TakeMembers(std::vector<JsonValue>::iterator value) {
        JsonValue::Members members;
        const auto firstKey = keys_.end() - (values_.end() - value);
        for (auto key = firstKey; key != keys_.end(); ++key, ++value)
            members.insert_or_assign(members.end(), std::move(*key), std::move(*value));
        keys_.erase(firstKey, keys_.end());
        return members;
    }

    // A member's name and its name-separator.
    Step ReadKey() {
        SkipBlanks();
        if (!ReadString(keys_.emplace_back())) return Step::failed;
        SkipBlanks();
        return Take(":") ? Step::valueNext : Step::failed;
    }

    Step ReadNumberRun() {
        const char* const begin = cursor_;
        cursor_ = std::find_if_not(cursor_, end_, IsNumberCharacter);
        if (cursor_ == begin) return Step::failed;
        return Done(ReadNumber({begin, cursor_}));
    }

    // Section 7. Most strings have no escape: those are copied once, at their size.
    bool ReadString(std::string& string) {
        if (!Take("\"")) return false;
        std::string_view plain;
        if (!ReadPlain(plain)) return false;
        if (*cursor_++ == '"') {
            string = plain;
            return true;
        }
        if (!ReadEscaped(plain)) return false;
        string = unescaped_;
        return true;
    }

    // What stands before the next quote or backslash, where the cursor is then. Control characters
    // are let through, which section 7 forbids, and so is every byte that is not UTF-8.
    bool ReadPlain(std::string_view& plain) {
        const char* const begin = cursor_;
        while (cursor_ != end_ && *cursor_ != '"' && *cursor_ != '\\')
            ++cursor_;
        plain = {begin, cursor_};
        return cursor_ != end_;
    }

    // The rest of a string from behind its first backslash; all of it collects in one buffer, whose
    // memory serves every string.
    bool ReadEscaped(std::string_view plain) {
        unescaped_ = plain;
        do {
            if (!ReadEscape(unescaped_) || !ReadPlain(plain)) return false;
            unescaped_ += plain;
        } while (*cursor_++ == '\\');
        return true;
    }

    // The character behind a backslash, and the four digits of a "u".
    bool ReadEscape(std::string& string) {
        if (cursor_ == end_) return false;
        constexpr std::string_view kLetters = "\"\\/bfnrt";
        constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
        const char letter = *cursor_++;
        if (letter == 'u') return ReadCodeUnit(string);
        const std::size_t found = kLetters.find(letter);
        if (found == std::string_view::npos) return false;
        string.push_back(kMeanings[found]);
        return true;
    }

    bool ReadCodeUnit(std::string& string) {
        if (end_ - cursor_ < 4) return false;
        unsigned unit = 0;
        for (int i = 0; i < 4; ++i) {
            const int digit = HexDigit(*cursor_++);
            if (digit < 0) return false;
            unit = unit << 4 | static_cast<unsigned>(digit);
        }
        AppendCodeUnit(string, unit);
        return true;
    }

    template <typename... Payload>
    Step Done(Payload&&... payload) {
        values_.emplace_back(std::forward<Payload>(payload)...);
        return Step::valueDone;
    }

    void SkipBlanks() {
        while (cursor_ != end_ && IsBlank(*cursor_))
            ++cursor_;
    }

    bool Take(std::string_view expected) {
        if (!std::string_view(cursor_, static_cast<std::size_t>(end_ - cursor_))
                 .starts_with(expected)) {
            return false;
        }
        cursor_ += expected.size();
        return true;
    }

    const char* cursor_;
    const char* end_;
    std::vector<Container> open_;
    std::vector<JsonValue> values_;
    std::vector<std::string> keys_;
    std::string unescaped_;
};

}  // namespace

JsonValue ParseJson(std::string_view text) {
    try {
        return Parser(text).Document();
    } catch (const std::exception&) {
        return JsonValue();
    }
}

const JsonValue& Member(const JsonValue& value, std::string_view key) {
    const auto member = value.members().find(key);
    return member != value.members().end() ? member->second : SharedEmpty<JsonValue>();
}
