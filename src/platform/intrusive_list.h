// A doubly linked list whose links lie in its members, so that a member leaves it in
// one step, from whichever list it is in, and no list ever allocates.

#pragma once

namespace cvl {

/// A link of a list. Derive from it once for each kind of list a type can be in; the Tag
/// tells the bases apart.
template <class Tag>
class ListLink {
 public:
  ListLink() = default;
  ~ListLink() { Unlink(); }
  ListLink(const ListLink &) = delete;
  ListLink &operator=(const ListLink &) = delete;

  bool IsLinked() const { return Next_ != this; }

  /// Takes this link out of its list, if it is in one.
  void Unlink() {
    Previous_->Next_ = Next_;
    Next_->Previous_ = Previous_;
    Previous_ = Next_ = this;
  }

 private:
  template <class, class>
  friend class IntrusiveList;

  ListLink *Previous_ = this;
  ListLink *Next_ = this;
};

/// A list of T, each a ListLink<Tag>. It doesn't own its members.
template <class T, class Tag>
class IntrusiveList {
 public:
  bool IsEmpty() const { return !Head_.IsLinked(); }

  void PushBack(T &member) {
    ListLink<Tag> &link = member;
    link.Unlink();
    link.Previous_ = Head_.Previous_;
    link.Next_ = &Head_;
    Head_.Previous_->Next_ = &link;
    Head_.Previous_ = &link;
  }

  /// Takes the first member out; null when the list is empty.
  T *PopFront() {
    if (IsEmpty()) return nullptr;
    ListLink<Tag> *link = Head_.Next_;
    link->Unlink();
    return static_cast<T *>(link);
  }

  /// Moves all members of OTHER to the end of this list.
  void TakeAll(IntrusiveList &other) {
    if (other.IsEmpty()) return;
    ListLink<Tag> *first = other.Head_.Next_;
    ListLink<Tag> *last = other.Head_.Previous_;
    other.Head_.Next_ = other.Head_.Previous_ = &other.Head_;
    first->Previous_ = Head_.Previous_;
    Head_.Previous_->Next_ = first;
    last->Next_ = &Head_;
    Head_.Previous_ = last;
  }

 private:
  ListLink<Tag> Head_;
};

}  // namespace cvl
