#pragma once

/**
 * What a command does at the moment, for the sentence about its crash. As long as an object lives it is that,
 * afterwards what it was before. Any thread, though two at once only tell of one.
 */
class CStage
{
public:
    /** @param inWhat behind "while", such as "it rendered"; a literal, since another process reads it. */
    explicit CStage(const char* inWhat) noexcept;
    CStage(const CStage&) = delete;
    CStage& operator=(const CStage&) = delete;
    ~CStage();

    /**
     * From now on the stages of processes that are forked from this one, which are one at a time, can be read
     * by Current after their end. Without it stages go nowhere.
     */
    static void Share();
    /** @return null: none was told. */
    static const char* Current() noexcept;

private:
    const char* mBefore = nullptr;
};
