#include "Comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

#include <sys/resource.h>

namespace {

double seconds(const timeval &time) {
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

/// Of this process and of the children it has waited for.
double cpuTime() {
    double sum = 0;
    for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        sum += seconds(usage.ru_utime) + seconds(usage.ru_stime);
    }
    return sum;
}

double quantile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values[size_t(part * double(values.size() - 1) + 0.5)];
}

} // namespace

void Comparison::subject(Work work) {
    m_contenders.insert(m_contenders.begin(), {.name = "Mosa", .work = std::move(work)});
}

void Comparison::peer(std::string name, double target, Work work) {
    m_contenders.push_back({.name = std::move(name), .target = target, .work = std::move(work)});
}

void Comparison::uncheckedPeer(std::string name, double target, Work work) {
    m_contenders.push_back(
        {.name = std::move(name), .target = target, .checked = false, .work = std::move(work)});
}

Comparison::Sample Comparison::measure(const Work &work, QByteArray &digest) const {
    if (m_setUp) {
        m_setUp();
    }
    const double cpu = cpuTime();
    const auto start = std::chrono::steady_clock::now();
    digest = work();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {.wall = wall.count(), .cpu = cpuTime() - cpu};
}

bool Comparison::warmUp() {
    QByteArray expected;
    bool same = true;
    for (size_t i = 0; i < m_contenders.size(); ++i) {
        QByteArray digest;
        measure(m_contenders[i].work, digest);
        if (i == 0) {
            expected = digest;
        } else if (m_contenders[i].checked && digest != expected) {
            std::printf("| %s | %s: another result: %s instead of %s |\n", m_title.c_str(),
                        m_contenders[i].name.c_str(), digest.constData(), expected.constData());
            same = false;
        }
    }
    return same;
}

bool Comparison::run(int rounds) {
    const bool same = warmUp();
    for (int round = 0; round < rounds; ++round) {
        // Back and forth, so that nobody always follows the same one.
        for (size_t i = 0; i < m_contenders.size(); ++i) {
            Contender &contender = m_contenders[round % 2 == 0 ? i : m_contenders.size() - 1 - i];
            QByteArray digest;
            contender.samples.push_back(measure(contender.work, digest));
        }
    }
    for (size_t i = 1; i < m_contenders.size(); ++i) {
        printRow(m_contenders[i]);
    }
    std::fflush(stdout);
    return same;
}

void Comparison::printHeader() {
    std::printf("| hot path | peer | Mosa ms | peer ms | ratio | quartiles | CPU ratio | target | |\n"
                "|---|---|---|---|---|---|---|---|---|\n");
}

void Comparison::printRow(const Contender &peer) const {
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> ratios;
    std::vector<double> cpuRatios;
    for (size_t i = 0; i < peer.samples.size(); ++i) {
        const Sample &mine = m_contenders.front().samples[i];
        ours.push_back(mine.wall * 1e3);
        theirs.push_back(peer.samples[i].wall * 1e3);
        ratios.push_back(mine.wall / peer.samples[i].wall);
        cpuRatios.push_back(mine.cpu / std::max(peer.samples[i].cpu, 1e-9));
    }
    const double ratio = quantile(ratios, 0.5);
    std::printf("| %s | %s | %.1f | %.1f | %.3f | %.3f–%.3f | %.3f | ≤ %.2f | %s |\n", m_title.c_str(),
                peer.name.c_str(), quantile(ours, 0.5), quantile(theirs, 0.5), ratio, quantile(ratios, 0.25),
                quantile(ratios, 0.75), quantile(cpuRatios, 0.5), peer.target,
                ratio <= peer.target ? "met" : "missed");
}
