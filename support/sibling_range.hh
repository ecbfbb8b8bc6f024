// Nodes that are chained by a link of their own, in a range-for.
#pragma once

template <class NODE, NODE *NODE::*NEXT> struct sibling_range {
    struct iterator {
        NODE *node;
        NODE &operator*() const {
            return *node;
        }
        iterator &operator++() {
            node = node->*NEXT;
            return *this;
        }
        bool operator!=(const iterator &other) const {
            return node != other.node;
        }
    };
    NODE *first;
    iterator begin() const {
        return {first};
    }
    iterator end() const {
        return {nullptr};
    }
};
