#pragma once

// A base without members, of objects that exist once. It takes room where it is not the first base.
class Noncopyable {
protected:
    Noncopyable() {}
    ~Noncopyable() {}

private:
    Noncopyable(const Noncopyable&) = delete;
    Noncopyable& operator=(const Noncopyable&) = delete;
};
