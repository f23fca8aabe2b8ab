// The JSON reader: UTF-8 text in, a value out, look-ups that never fail.
#pragma once

#include <concepts>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

enum class JsonTag { null = 0, boolean = 1, number = 2, string = 3, array = 4, object = 5 };

/// One JSON value, copied deeply. No operation recurses with the depth of the value, and none
/// throws: a copy that memory does not suffice for is null. A value moved from is null.
class JsonValue {
  public:
    using Elements = std::vector<JsonValue>;
    /// Ordered by key, byte by byte.
    using Members = std::map<std::string, JsonValue, std::less<>>;

    JsonValue() = default;
    explicit JsonValue(std::same_as<bool> auto boolean) : payload_(boolean) {}
    explicit JsonValue(double number) : payload_(number) {}
    explicit JsonValue(std::string string) : payload_(std::move(string)) {}
    explicit JsonValue(Elements elements) : payload_(std::move(elements)) {}
    explicit JsonValue(Members members);

    JsonValue(const JsonValue& other) noexcept;
    JsonValue(JsonValue&& other) noexcept : payload_(std::move(other.payload_)) {
        other.payload_.emplace<std::monostate>();
    }
    /// Safe when `other` lives inside this value.
    JsonValue& operator=(JsonValue other) noexcept {
        payload_.swap(other.payload_);
        return *this;
    }
    ~JsonValue();

    [[nodiscard]] JsonTag tag() const { return static_cast<JsonTag>(payload_.index()); }
    /// The payload of the kind that the tag names; of any other kind an empty one.
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] double number() const;
    [[nodiscard]] const std::string& string() const;
    [[nodiscard]] const Elements& elements() const;
    [[nodiscard]] const Members& members() const;

  private:
    // In the order of the tags. The map is the one payload large enough to be kept elsewhere.
    using Payload =
        std::variant<std::monostate, bool, double, std::string, Elements, std::unique_ptr<Members>>;

    [[nodiscard]] Elements* array() { return std::get_if<Elements>(&payload_); }
    [[nodiscard]] Members* object();
    [[nodiscard]] bool isFilled() const;
    [[nodiscard]] bool isNested() const;
    JsonValue& lastChild();
    void dropLastChild();
    void releaseNested() noexcept;
    void copyFrom(const JsonValue& source);

    Payload payload_;
};

/// The root of the document, or null when `text` is not exactly one JSON value with optional
/// blanks around it, and when memory does not suffice. RFC 8259 with three liberties: a number is
/// what `strtod` makes of a run of digits, signs, points and exponent letters; control characters
/// may stand in strings; each \u escape is encoded on its own, so that a surrogate pair becomes two
/// sequences of three bytes. The last of several members with one key wins. There is no depth
/// limit.
JsonValue ParseJson(std::string_view text);

/// The member of an object; a reference to one shared null value when there is none, or when
/// `value` is not an object.
const JsonValue& Member(const JsonValue& value, std::string_view key);
