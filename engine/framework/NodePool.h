// Fixed-size list nodes taken from chunks that stay allocated until the pool is destroyed.
// Freed nodes go back to a free chain and are reused first, so lists that only shuffle
// entries (voice lists, consumer lists) stop allocating once the first chunk exists.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace tolvane {

template <typename Payload>
class NodePool {
public:
    struct Node {
        Node* next = nullptr;
        Node* prev = nullptr;
        Payload payload{};
    };

    static constexpr int kChunkNodes = 255;

    NodePool() { grow(); }
    NodePool(const NodePool&) = delete;
    NodePool& operator=(const NodePool&) = delete;

    Node* acquire() {
        if (!free_) grow();
        Node* n = free_;
        free_ = n->next;
        n->next = n->prev = nullptr;
        n->payload = Payload{};
        ++inUse_;
        return n;
    }

    void release(Node* n) {
        n->prev = nullptr;
        n->next = free_;
        free_ = n;
        --inUse_;
    }

private:
    void grow() {
        chunks_.emplace_back(new Node[kChunkNodes]);
        Node* chunk = chunks_.back().get();
        for (int i = kChunkNodes - 1; i >= 0; --i) {
            chunk[i].next = free_;
            free_ = &chunk[i];
        }
    }

    std::vector<std::unique_ptr<Node[]>> chunks_;
    Node* free_ = nullptr;
    int inUse_ = 0;
};

// A doubly linked list whose nodes come from a NodePool (oldest entry at the front).
template <typename Payload>
class PoolList {
public:
    using Pool = NodePool<Payload>;
    using Node = typename Pool::Node;

    explicit PoolList(Pool& pool) : pool_(&pool) {}
    PoolList(const PoolList&) = delete;
    PoolList& operator=(const PoolList&) = delete;
    ~PoolList() { clear(); }

    Node* front() const { return head_; }
    Node* back() const { return tail_; }
    bool empty() const { return head_ == nullptr; }
    int size() const { return size_; }

    void pushBack(const Payload& p) {
        Node* n = pool_->acquire();
        n->payload = p;
        n->prev = tail_;
        if (tail_) tail_->next = n; else head_ = n;
        tail_ = n;
        ++size_;
    }

    void erase(Node* n) {
        if (n->prev) n->prev->next = n->next; else head_ = n->next;
        if (n->next) n->next->prev = n->prev; else tail_ = n->prev;
        --size_;
        pool_->release(n);
    }

    void clear() {
        while (head_) erase(head_);
    }

    template <typename Pred>
    Node* findFromFront(Pred pred) const {
        for (Node* n = head_; n; n = n->next)
            if (pred(n->payload)) return n;
        return nullptr;
    }

    template <typename Pred>
    Node* findFromBack(Pred pred) const {
        for (Node* n = tail_; n; n = n->prev)
            if (pred(n->payload)) return n;
        return nullptr;
    }

private:
    Pool* pool_;
    Node* head_ = nullptr;
    Node* tail_ = nullptr;
    int size_ = 0;
};

}  // namespace tolvane
