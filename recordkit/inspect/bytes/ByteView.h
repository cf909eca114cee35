// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_BYTES_BYTEVIEW_H
#define RECORDKIT_INSPECT_BYTES_BYTEVIEW_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace recordkit::inspect {

/// Bytes that their holder owns.
using Bytes = std::vector<unsigned char>;

/// Bytes with another owner: a pointer and a length, cheap to copy. The bytes must outlive the
/// view. The caller must check indexes; part() and the numbers check their own.
class ByteView {
public:
    constexpr ByteView() = default;
    constexpr ByteView(const unsigned char* first, std::size_t count) : bytes(first), length(count)
    {
    }
    ByteView(const Bytes& owner) : ByteView(owner.data(), owner.size()) {}
    /// The content of a file, or a value that the library returns as a text.
    ByteView(const std::string& owner)
        : ByteView(reinterpret_cast<const unsigned char*>(owner.data()), owner.size())
    {
    }
    template <std::size_t N> constexpr ByteView(const std::array<unsigned char, N>& owner)
        : ByteView(owner.data(), N)
    {
    }
    template <std::size_t N> constexpr ByteView(const unsigned char (&owner)[N])
        : ByteView(owner, N)
    {
    }

    constexpr const unsigned char* data() const { return bytes; }
    constexpr std::size_t size() const { return length; }
    constexpr bool empty() const { return length == 0; }
    constexpr const unsigned char* begin() const { return bytes; }
    constexpr const unsigned char* end() const { return bytes + length; }
    constexpr unsigned char operator[](std::size_t at) const { return bytes[at]; }

    /// `count` bytes from an offset on, or as many of them as exist.
    constexpr ByteView part(std::size_t offset, std::size_t count = ~std::size_t{0}) const
    {
        const std::size_t from = offset < length ? offset : length;
        return {bytes + from, count < length - from ? count : length - from};
    }
    /// Whether these bytes are inside the view; safe for any numbers.
    constexpr bool contains(std::size_t offset, std::size_t count) const
    {
        return offset <= length && count <= length - offset;
    }

    /// A number with its low byte first; bytes beyond the end count as 0.
    constexpr unsigned int le16(std::size_t offset) const { return number(offset, 2); }
    constexpr unsigned int le24(std::size_t offset) const { return number(offset, 3); }
    constexpr unsigned int le32(std::size_t offset) const { return number(offset, 4); }

    Bytes copy() const { return {begin(), end()}; }
    std::string text() const { return {begin(), end()}; }

private:
    constexpr unsigned int number(std::size_t offset, std::size_t width) const
    {
        unsigned int value = 0;
        for (std::size_t i = 0; i < width && offset < length && i < length - offset; ++i) {
            value |= static_cast<unsigned int>(bytes[offset + i]) << 8 * i;
        }
        return value;
    }

    const unsigned char* bytes = nullptr;
    std::size_t length = 0;
};

inline bool operator==(ByteView left, ByteView right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}
inline bool operator!=(ByteView left, ByteView right)
{
    return !(left == right);
}

}

#endif
