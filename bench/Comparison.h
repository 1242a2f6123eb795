#pragma once

#include <QByteArray>

#include <functional>
#include <string>
#include <vector>

/// Measures ways of doing the same work against each other: in turns, in one run, so that whatever else the
/// machine does meets all of them alike. The figures are ratios; times only tell their scale.
class Comparison {
public:
    /// Does the work once and returns a digest of its result. Digests that differ fail the comparison, for a
    /// faster way to another result proves nothing.
    using Work = std::function<QByteArray()>;

    explicit Comparison(std::string title) : m_title(std::move(title)) {}

    /// Done before each piece of work, outside of the measured time.
    void before(std::function<void()> setUp) { m_setUp = std::move(setUp); }
    /// Mosa's way.
    void subject(Work work);
    /// A peer, and what subject time / peer time may be at most.
    void peer(std::string name, double target, Work work);
    /// A peer whose result has another shape, so that digests are not compared.
    void uncheckedPeer(std::string name, double target, Work work);

    /// Runs everything once to warm up and then `rounds` times, and prints a row for each peer: median times,
    /// median and quartiles of the ratios, and whether the target is met. False when digests differ.
    bool run(int rounds);

    static void printHeader();

private:
    struct Sample {
        double wall = 0;
        double cpu = 0;
    };
    struct Contender {
        std::string name;
        double target = 0;
        bool checked = true;
        Work work;
        std::vector<Sample> samples = {};
    };

    Sample measure(const Work &work, QByteArray &digest) const;
    bool warmUp();
    void printRow(const Contender &peer) const;

    std::string m_title;
    std::function<void()> m_setUp;
    /// The first one is the subject.
    std::vector<Contender> m_contenders;
};
