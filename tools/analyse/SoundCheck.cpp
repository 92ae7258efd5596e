#include "tools/analyse/SoundCheck.h"

#include <algorithm>
#include <cmath>
#include <complex>

#include "tools/analyse/Fft.h"

namespace tolvane::analyse {
namespace {

double keyHz(int key) { return 440.0 * std::pow(2.0, (key - 69) / 12.0); }

std::size_t at(double seconds, double rate, std::size_t size) {
    const double i = std::floor(seconds * rate + 0.5);
    if (i <= 0.0) return 0;
    return std::min(size, static_cast<std::size_t>(i));
}

std::vector<float> monoSum(const Stereo& audio) {
    std::vector<float> m(audio.left.size());
    for (std::size_t i = 0; i < m.size(); ++i) m[i] = 0.5f * (audio.left[i] + audio.right[i]);
    return m;
}

}  // namespace

double toDb(double x) { return x > 1e-10 ? 20.0 * std::log10(x) : -200.0; }

std::vector<Take> testPhrase(const ProgramBrief& brief, bool quick) {
    std::vector<Take> takes;
    const int key = brief.testNote;
    if (isOneShot(brief)) {
        const double held = quick ? 1.5 : 2.0, tail = quick ? 0.5 : 1.5;
        takes.push_back({"tap", {{key, brief.velocity}}, 0.15, quick ? 0.85 : 1.35, 0.0});
        takes.push_back({"held", {{key, brief.velocity}}, held, tail, 0.0});
        if (brief.softVelocity > 0)
            takes.push_back({"soft", {{key, brief.softVelocity}}, 0.15, quick ? 0.85 : 1.35, 0.0});
        return takes;
    }
    const double hold = quick ? 2.0 : 2.5, tail = quick ? 0.5 : 4.5;
    const double hz = brief.pitched ? keyHz(key) : 0.0;
    takes.push_back({"note", {{key, brief.velocity}}, hold, tail, hz});
    if (brief.softVelocity > 0) takes.push_back({"soft", {{key, brief.softVelocity}}, hold, tail, hz});
    if (!quick) takes.push_back({"octave", {{key + 12, brief.velocity}}, hold, tail, hz * 2.0});
    if (brief.polyphonic)
        takes.push_back({"triad", {{key, brief.velocity}, {key + 4, brief.velocity}, {key + 7, brief.velocity}},
                         hold, tail, 0.0});
    return takes;
}

std::vector<double> levelEnvelope(const Stereo& audio, double hopSeconds) {
    const std::size_t n = audio.left.size();
    const std::size_t hop = std::max<std::size_t>(1, static_cast<std::size_t>(hopSeconds * audio.sampleRate));
    const std::size_t window = 2 * hop;
    std::vector<double> env;
    for (std::size_t start = 0; start < n; start += hop) {
        const std::size_t end = std::min(n, start + window);
        double sum = 0.0;
        for (std::size_t i = start; i < end; ++i)
            sum += 0.5 * (double(audio.left[i]) * audio.left[i] + double(audio.right[i]) * audio.right[i]);
        env.push_back(std::sqrt(sum / static_cast<double>(std::max<std::size_t>(1, end - start))));
    }
    return env;
}

namespace {

// YIN's difference function: d(t) = sum over the window of (x[j] - x[j + t])^2, normalised by its
// running mean, d'(t) = d(t) t / sum of d(1..t). A periodic stretch dips towards 0 at its period;
// noise stays near 1. The correlation terms come from one FFT. Answers d' for lags 0..maxLag.
std::vector<double> normalisedDifference(const std::vector<float>& x, std::size_t from, std::size_t length,
                                         std::size_t maxLag) {
    const std::size_t window = length - maxLag;
    std::size_t size = 1;
    while (size < 2 * length) size <<= 1;
    std::vector<std::complex<double>> a(size), b(size);
    for (std::size_t i = 0; i < length; ++i) b[i] = x[from + i];
    for (std::size_t i = 0; i < window; ++i) a[i] = x[from + i];
    fft(a);
    fft(b);
    for (std::size_t i = 0; i < size; ++i) a[i] = std::conj(a[i]) * b[i];
    fft(a);  // forward transform of the conjugate product: the correlation, reversed and scaled
    std::vector<double> prefix(length + 1, 0.0);
    for (std::size_t i = 0; i < length; ++i) prefix[i + 1] = prefix[i] + double(x[from + i]) * x[from + i];
    const double e0 = prefix[window];
    std::vector<double> d(maxLag + 1, 1.0);
    if (e0 <= 1e-12) return d;
    double running = 0.0;
    for (std::size_t t = 1; t <= maxLag; ++t) {
        const double r = a[(size - t) % size].real() / static_cast<double>(size);
        const double raw = e0 + (prefix[t + window] - prefix[t]) - 2.0 * r;
        running += raw;
        d[t] = running > 0.0 ? raw * static_cast<double>(t) / running : 1.0;
    }
    return d;
}

}  // namespace

// YIN: the period is the first dip of d' below the threshold (refined to its local minimum and by a
// parabola), so the lowest strong period wins over its multiples.
double fundamentalHz(const std::vector<float>& x, std::size_t from, std::size_t length, double sampleRate) {
    const std::size_t maxLag = std::min(length / 2, static_cast<std::size_t>(sampleRate / 20.0));
    const std::size_t minLag = std::max<std::size_t>(2, static_cast<std::size_t>(sampleRate / 5000.0));
    if (from + length > x.size() || maxLag <= minLag + 2) return 0.0;
    const std::vector<double> d = normalisedDifference(x, from, length, maxLag);
    std::size_t best = 0;
    for (std::size_t t = minLag; t < maxLag; ++t) {
        if (d[t] < 0.1) {
            while (t + 1 < maxLag && d[t + 1] < d[t]) ++t;
            best = t;
            break;
        }
    }
    if (best == 0) {  // no dip under the threshold: the global minimum, if it is clear enough
        best = static_cast<std::size_t>(std::min_element(d.begin() + minLag, d.begin() + maxLag) - d.begin());
        if (d[best] > 0.45) return 0.0;
    }
    double shift = 0.0;
    if (best > minLag && best + 1 < maxLag) {
        const double l = d[best - 1], c = d[best], h = d[best + 1];
        const double den = l - 2.0 * c + h;
        if (den > 0.0) shift = 0.5 * (l - h) / den;
    }
    return sampleRate / (static_cast<double>(best) + shift);
}

double aperiodicity(const std::vector<float>& x, std::size_t from, std::size_t length, double sampleRate) {
    const std::size_t maxLag = std::min(length / 2, static_cast<std::size_t>(sampleRate / 20.0));
    const std::size_t minLag = std::max<std::size_t>(2, static_cast<std::size_t>(sampleRate / 8000.0));
    if (from + length > x.size() || maxLag <= minLag + 2) return 1.0;
    const std::vector<double> d = normalisedDifference(x, from, length, maxLag);
    return std::clamp(*std::min_element(d.begin() + minLag, d.begin() + maxLag), 0.0, 1.0);
}

std::vector<double> meanPowerSpectrum(const Stereo& audio, std::size_t from, std::size_t to, int size) {
    const std::vector<float> mono = monoSum(audio);
    to = std::min(to, mono.size());
    std::vector<double> power(static_cast<std::size_t>(size / 2), 0.0);
    std::vector<std::complex<double>> frame(static_cast<std::size_t>(size));
    int frames = 0;
    for (std::size_t start = from; start + static_cast<std::size_t>(size) <= to || frames == 0;
         start += static_cast<std::size_t>(size / 2)) {
        for (int i = 0; i < size; ++i) {
            const std::size_t k = start + static_cast<std::size_t>(i);
            const double w = 0.5 - 0.5 * std::cos(2.0 * kPi * i / size);
            frame[static_cast<std::size_t>(i)] = k < to ? w * mono[k] : 0.0;
        }
        fft(frame);
        for (std::size_t i = 0; i < power.size(); ++i) power[i] += std::norm(frame[i]);
        ++frames;
        if (start + static_cast<std::size_t>(size) > to) break;
    }
    for (double& p : power) p /= frames;
    return power;
}

double spectralCentroidHz(const std::vector<double>& power, double sampleRate) {
    const double binHz = sampleRate / (2.0 * static_cast<double>(power.size()));
    double weighted = 0.0, total = 0.0;
    for (std::size_t i = 1; i < power.size(); ++i) {
        const double f = static_cast<double>(i) * binHz;
        if (f < 20.0 || f > 20000.0) continue;
        weighted += f * power[i];
        total += power[i];
    }
    return total > 0.0 ? weighted / total : 0.0;
}

Measures measure(const Stereo& audio, const Take& take) {
    Measures m;
    const double rate = audio.sampleRate;
    const std::size_t n = audio.left.size();
    const double hop = 0.005;
    const std::vector<double> env = levelEnvelope(audio, hop);
    const std::size_t on = at(kNoteOnSeconds / hop, 1.0, env.size());
    const std::size_t off = at((kNoteOnSeconds + take.holdSeconds) / hop, 1.0, env.size());
    const double peakLevel = env.empty() ? 0.0 : *std::max_element(env.begin(), env.end());
    if (peakLevel <= 0.0) return m;

    for (std::size_t i = on; i < env.size(); ++i)
        if (env[i] >= 0.5 * peakLevel) {
            m.onsetSeconds = static_cast<double>(i - on) * hop;
            break;
        }
    // Level after one second: the 100 ms around it against the loudest 100 ms.
    const std::size_t win = static_cast<std::size_t>(0.1 * rate), step = static_cast<std::size_t>(0.01 * rate);
    auto meanSquare = [&](std::size_t start) {
        double s = 0.0;
        for (std::size_t i = start; i < start + win && i < n; ++i)
            s += 0.5 * (double(audio.left[i]) * audio.left[i] + double(audio.right[i]) * audio.right[i]);
        return s / static_cast<double>(win);
    };
    double loudest = 0.0;
    for (std::size_t start = 0; start + win <= n; start += step) loudest = std::max(loudest, meanSquare(start));
    m.levelAfter1sDb = toDb(std::sqrt(meanSquare(at(kNoteOnSeconds + 0.95, rate, n)) / loudest));
    m.loudestRmsDb = toDb(std::sqrt(loudest));
    // Last frame above -40 dB re peak: the sound stays below after it.
    const double floor40 = peakLevel * 0.01;
    std::size_t last = env.size();
    for (std::size_t i = env.size(); i-- > 0;)
        if (env[i] >= floor40) {
            last = i;
            break;
        }
    if (last + 4 < env.size()) {  // it did fall below within the take
        m.decay40Seconds = static_cast<double>(last + 1 - on) * hop;
        m.release40Seconds = last + 1 > off ? static_cast<double>(last + 1 - off) * hop : 0.0;
    }

    // Pitch: YIN over 100 ms windows every 50 ms while the key is held (from 0.25 s after note-on,
    // earlier for short sounds), in cents folded against the first estimate's octave.
    if (take.expectedHz > 0.0) {
        const std::vector<float> mono = monoSum(audio);
        const std::size_t length = static_cast<std::size_t>(0.1 * rate) + static_cast<std::size_t>(rate / 20.0);
        const double first = kNoteOnSeconds + std::min(0.25, 0.2 * take.holdSeconds);
        const double lastStart = kNoteOnSeconds + take.holdSeconds - 0.15;
        std::vector<double> centsSeen;
        double reference = 0.0;
        for (double t = first; t <= lastStart; t += 0.05) {
            const std::size_t start = at(t, rate, n);
            if (env[std::min(env.size() - 1, at(t / hop, 1.0, env.size()))] < peakLevel * 0.03) continue;
            const double hz = fundamentalHz(mono, start, length, rate);
            if (hz <= 0.0) continue;
            double c = 1200.0 * std::log2(hz / take.expectedHz);
            if (centsSeen.empty()) reference = c;
            while (c - reference > 600.0) c -= 1200.0;
            while (c - reference < -600.0) c += 1200.0;
            centsSeen.push_back(c);
        }
        if (!centsSeen.empty()) {  // the median: a stray window (a period multiple's dip) does not pull it
            std::nth_element(centsSeen.begin(), centsSeen.begin() + centsSeen.size() / 2, centsSeen.end());
            const double middle = centsSeen[centsSeen.size() / 2];
            m.pitchHz = take.expectedHz * std::pow(2.0, middle / 1200.0);
            double folded = std::fmod(middle, 1200.0);
            if (folded > 600.0) folded -= 1200.0;
            if (folded < -600.0) folded += 1200.0;
            m.pitchCents = folded;
        }
    }

    // Spectrum while sounding: the held part, or for short sounds the first 0.3 s.
    const std::size_t from = at(kNoteOnSeconds, rate, n);
    const double spanSeconds = take.holdSeconds < 0.5 ? 0.3 : take.holdSeconds;
    const std::size_t to = at(kNoteOnSeconds + spanSeconds, rate, n);
    const std::vector<double> power = meanPowerSpectrum(audio, from, to, 4096);
    m.centroidHz = spectralCentroidHz(power, rate);
    {
        const std::vector<float> mono = monoSum(audio);
        const std::size_t length = static_cast<std::size_t>(0.05 * rate) + static_cast<std::size_t>(rate / 20.0);
        std::vector<double> seen;
        for (std::size_t start = from; start + length <= to && seen.size() < 24; start += length / 2) {
            const std::size_t e = std::min(env.size() - 1, static_cast<std::size_t>(start / (hop * rate)));
            if (env[e] >= peakLevel * 0.03) seen.push_back(aperiodicity(mono, start, length, rate));
        }
        if (!seen.empty()) {
            std::nth_element(seen.begin(), seen.begin() + seen.size() / 2, seen.end());
            m.noisiness = seen[seen.size() / 2];
        }
    }

    double side = 0.0, mid = 0.0, peak = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double l = audio.left[i], r = audio.right[i];
        side += (l - r) * (l - r);
        mid += (l + r) * (l + r);
        peak = std::max({peak, std::fabs(l), std::fabs(r)});
    }
    m.stereoWidth = mid > 0.0 ? std::sqrt(side / mid) : 0.0;
    m.peakDb = toDb(peak);
    return m;
}

std::vector<std::vector<double>> bandLevels(const Stereo& audio, double seconds) {
    const double rate = audio.sampleRate;
    const std::vector<float> mono = monoSum(audio);
    const std::size_t frameSize = 2048;
    const std::size_t hop = static_cast<std::size_t>(0.05 * rate);
    const std::size_t end = std::min(mono.size(), static_cast<std::size_t>(seconds * rate));
    std::vector<std::vector<double>> frames;
    std::vector<std::complex<double>> buffer(frameSize);
    const int bands = 24;
    const double lowHz = 40.0, highHz = 16000.0;
    for (std::size_t start = 0; start + frameSize <= end; start += hop) {
        for (std::size_t i = 0; i < frameSize; ++i)
            buffer[i] = (0.5 - 0.5 * std::cos(2.0 * kPi * static_cast<double>(i) / frameSize)) * mono[start + i];
        fft(buffer);
        std::vector<double> energy(bands, 1e-20);
        for (std::size_t i = 1; i < frameSize / 2; ++i) {
            const double f = static_cast<double>(i) * rate / frameSize;
            if (f < lowHz || f >= highHz) continue;
            const int band = static_cast<int>(bands * std::log(f / lowHz) / std::log(highHz / lowHz));
            energy[static_cast<std::size_t>(band)] += std::norm(buffer[i]);
        }
        for (double& e : energy) e = 10.0 * std::log10(e);
        frames.push_back(energy);
    }
    return frames;
}

namespace {

// The two halves of a fingerprint: the mean band spectrum and the broadband level per frame, in dB
// relative to their own maxima and floored 60 dB below.
void spectrumAndContour(const std::vector<std::vector<double>>& bands, std::size_t frames,
                        std::vector<double>& spectrum, std::vector<double>& contour) {
    const std::size_t n = bands.empty() ? 0 : bands[0].size();
    spectrum.assign(n, 0.0);
    contour.assign(frames, 0.0);
    for (std::size_t f = 0; f < frames; ++f)
        for (std::size_t k = 0; k < n; ++k) {
            const double power = std::pow(10.0, bands[f][k] / 10.0);
            spectrum[k] += power;
            contour[f] += power;
        }
    for (std::vector<double>* v : {&spectrum, &contour}) {
        double top = 1e-30;
        for (double p : *v) top = std::max(top, p);
        for (double& p : *v) p = std::max(-60.0, 10.0 * std::log10(std::max(p, 1e-30) / top));
    }
}

double rmsDifference(const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return a.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(a.size()));
}

}  // namespace

double fingerprintDistanceDb(const std::vector<std::vector<double>>& a, const std::vector<std::vector<double>>& b) {
    const std::size_t frames = std::min(a.size(), b.size());
    std::vector<double> spectrumA, contourA, spectrumB, contourB;
    spectrumAndContour(a, frames, spectrumA, contourA);
    spectrumAndContour(b, frames, spectrumB, contourB);
    return std::max(rmsDifference(spectrumA, spectrumB), rmsDifference(contourA, contourB));
}

}  // namespace tolvane::analyse
