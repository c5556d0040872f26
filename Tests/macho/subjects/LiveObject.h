#pragma once

/** Counts itself while it lives: what a throw forgets to destroy stays counted. */
class CLiveObject
{
public:
    explicit CLiveObject(int& ioCount) : mCount(ioCount) { ++mCount; }
    CLiveObject(const CLiveObject&) = delete;
    CLiveObject& operator=(const CLiveObject&) = delete;
    ~CLiveObject() { --mCount; }

private:
    int& mCount;
};
