#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace wicker {

/// A list that grows at its end in chunks of `ChunkSize` elements: like std::deque, an
/// element stays where it is while others are added, but one allocation serves a whole
/// chunk instead of a few elements, and a chunk's elements lie one after another.
template <class T, size_t ChunkSize = 512> class ChunkedList {
public:
    ChunkedList() = default;
    ChunkedList(const ChunkedList&) = delete;
    ChunkedList& operator=(const ChunkedList&) = delete;
    ~ChunkedList() { clear(); }

    size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    T& operator[](size_t i) { return *Slot(i); }
    const T& operator[](size_t i) const { return *Slot(i); }
    const T& at(size_t i) const {
        if (i >= m_size) {
            throw std::out_of_range("no element at " + std::to_string(i));
        }
        return (*this)[i];
    }
    T& back() { return (*this)[m_size - 1]; }
    const T& back() const { return (*this)[m_size - 1]; }

    /// Adds a default element at the end and returns it.
    T& emplace_back() {
        if (m_size == m_chunks.size() * ChunkSize) {
            m_chunks.emplace_back(new Chunk); // not zeroed: each element is built in place
        }
        T* slot = new (Slot(m_size)) T();
        ++m_size;
        return *slot;
    }
    void push_back(T&& value) { emplace_back() = std::move(value); }
    void pop_back() {
        --m_size;
        Slot(m_size)->~T();
    }
    void clear() {
        while (m_size > 0) {
            pop_back();
        }
        m_chunks.clear();
    }

    class const_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = const T*;
        using reference = const T&;

        const_iterator() = default;
        const_iterator(const ChunkedList* list, size_t i) : m_list(list), m_i(i) {}
        const T& operator*() const { return (*m_list)[m_i]; }
        const T* operator->() const { return &(*m_list)[m_i]; }
        const_iterator& operator++() {
            ++m_i;
            return *this;
        }
        const_iterator operator++(int) { return const_iterator(m_list, m_i++); }
        bool operator==(const const_iterator& other) const { return m_i == other.m_i; }

    private:
        const ChunkedList* m_list = nullptr;
        size_t m_i = 0;
    };
    const_iterator begin() const { return const_iterator(this, 0); }
    const_iterator end() const { return const_iterator(this, m_size); }

private:
    struct Chunk {
        alignas(T) std::byte bytes[ChunkSize * sizeof(T)];
    };
    T* Slot(size_t i) const {
        return std::launder(reinterpret_cast<T*>(m_chunks[i / ChunkSize]->bytes) + i % ChunkSize);
    }

    std::vector<std::unique_ptr<Chunk>> m_chunks;
    size_t m_size = 0;
};

} // namespace wicker
