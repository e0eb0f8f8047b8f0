#include <norvakavlor/platform/http_back_end.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <curl/curl.h>
#include <exception>
#include <linux/tcp.h>
#include <memory>
#include <netinet/in.h>
#include <new>
#include <norvakavlor/platform/url.h>
#include <norvakavlor/text/text.h>
#include <string>
#include <sys/socket.h>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

namespace norvakavlor::platform {
namespace {

using Clock = std::chrono::steady_clock;
using Headers = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

void append(Headers& headers, const std::string& line) {
    curl_slist* const longer = curl_slist_append(headers.get(), line.c_str());
    if (!longer)
        throw std::bad_alloc();
    std::ignore = headers.release();
    headers.reset(longer);
}

/// The request's headers, and none that curl would add.
Headers headersOf(const HttpRequest& request) {
    Headers headers(nullptr, curl_slist_free_all);
    append(headers, "Expect:");
    append(headers, "User-Agent: " + std::string(kUserAgent));
    bool hasType = false;
    for (const auto& [name, value] : request.headers) {
        hasType = hasType || equalIgnoringCase(name, "Content-Type");
        // A colon without a value would remove the header.
        append(headers, value.empty() ? name + ";" : name + ": " + value);
    }
    if (!hasType)
        append(headers, "Content-Type:");
    return headers;
}

/// One transfer: its options, what came in, and when.
class Transfer {
public:
    Transfer(const HttpRequest& request, const HttpLimits& limits)
        : request_(request), limits_(limits), headers_(headersOf(request)) {
        if (!easy_ || !multi_)
            throw std::bad_alloc();
        setTarget();
        setManners();
        setBody();
        setCallbacks();
        require(curl_multi_add_handle(multi_.get(), easy_.get()));
    }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
    ~Transfer() { curl_multi_remove_handle(multi_.get(), easy_.get()); }

    HttpExchange run() {
        const CURLcode result = perform();
        if (fault_)
            std::rethrow_exception(fault_);
        require(result);
        // If a connection ends within the head, curl gives an empty reply.
        if (!sawWholeHead_)
            throw transportError(request_.url, transport_reason::kCutOff);
        long status = 0;
        require(curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status));
        reply_.status = static_cast<int>(status);
        return std::move(reply_);
    }

private:
    /// Without one of its options it would be another request.
    template <class T> void set(CURLoption option, T value) {
        require(curl_easy_setopt(easy_.get(), option, value));
    }

    void setTarget() {
        set(CURLOPT_URL, request_.url.c_str());
        // If memory runs out, curl drops the url's query and sends the rest.
        set(CURLOPT_REQUEST_TARGET, requestTarget(request_.url).c_str());
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_PROXY, "");
        set(CURLOPT_FRESH_CONNECT, 1L);
        set(CURLOPT_FORBID_REUSE, 1L);
        set(CURLOPT_CONNECTTIMEOUT_MS,
            static_cast<long>(std::clamp<int64_t>(limits_.connect.count(), 1, INT32_MAX)));
    }

    void setManners() {
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        set(CURLOPT_HTTP09_ALLOWED, 0L);
        set(CURLOPT_FOLLOWLOCATION, 0L);
        set(CURLOPT_ERRORBUFFER, detail_.data());
    }

    void setBody() {
        set(CURLOPT_HTTPHEADER, headers_.get());
        if (request_.method == "POST" || !request_.body.empty()) {
            set(CURLOPT_POST, 1L);
            set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
            set(CURLOPT_POSTFIELDS, request_.body.c_str());
        }
        if (request_.method == "HEAD") {
            set(CURLOPT_NOBODY, 1L);
        } else if (request_.method != "POST") {
            set(CURLOPT_CUSTOMREQUEST, request_.method.c_str());
        }
    }

    void setCallbacks() {
        set(CURLOPT_PREREQFUNCTION, &Transfer::connected);
        set(CURLOPT_PREREQDATA, this);
        set(CURLOPT_CLOSESOCKETFUNCTION, &Transfer::closing);
        set(CURLOPT_CLOSESOCKETDATA, this);
        set(CURLOPT_HEADERFUNCTION, &Transfer::header);
        set(CURLOPT_HEADERDATA, this);
        set(CURLOPT_WRITEFUNCTION, &Transfer::content);
        set(CURLOPT_WRITEDATA, this);
        set(CURLOPT_XFERINFOFUNCTION, &Transfer::progress);
        set(CURLOPT_XFERINFODATA, this);
        set(CURLOPT_NOPROGRESS, 0L);
    }

    static Transfer& of(void* self) { return *static_cast<Transfer*>(self); }

    static int connected(void* self, char*, char*, int, int) {
        of(self).isConnected_ = true;
        of(self).lastProgress_ = Clock::now();
        return CURL_PREREQFUNC_OK;
    }

    static int closing(void* self, curl_socket_t socket) {
        tcp_info state{};
        socklen_t size = sizeof state;
        if (::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &state, &size) == 0)
            of(self).received_ = state.tcpi_bytes_received;
        return ::close(socket);
    }

    /// No exception may pass through curl's frames: it waits until curl has stopped.
    template <class Step> static size_t guarded(void* self, size_t size, Step&& step) {
        try {
            of(self).lastProgress_ = Clock::now();
            step(of(self));
            return size;
        } catch (const std::exception&) {
            of(self).fault_ = std::current_exception();
            return CURL_WRITEFUNC_ERROR;
        }
    }

    static size_t header(char* data, size_t, size_t size, void* self) {
        return guarded(self, size, [&](Transfer& transfer) { transfer.takeHeader({data, size}); });
    }

    void takeHeader(std::string_view line) {
        // Start again: an interim reply's headers are not the final one's.
        if (line.starts_with("HTTP/")) {
            reply_ = {};
            lengths_.clear();
            sawStatus_ = true;
            sawWholeHead_ = false;
        }
        // Ignore trailer headers after a chunked body.
        if (sawWholeHead_)
            return;
        constexpr size_t kLongestHead = 1u << 18;
        if ((headSize_ += line.size()) > kLongestHead)
            throw transportError(request_.url, transport_reason::kTooLarge);
        sawWholeHead_ = line == "\r\n" || line == "\n";
        // curl takes "100abc" for 100, and the last of two lengths.
        if (sawWholeHead_)
            contentLength(lengths_, request_.url);
        line = line.substr(0, line.find_last_not_of("\r\n") + 1);
        const size_t colon = std::min(line.find(':'), line.size());
        const std::string_view name = line.substr(0, colon);
        const std::string_view value = trimBlanks(line.substr(std::min(colon + 1, line.size())));
        if (equalIgnoringCase(name, "Content-Type"))
            reply_.contentType = value;
        if (equalIgnoringCase(name, "Location"))
            reply_.redirect = value;
        if (equalIgnoringCase(name, "Content-Length"))
            lengths_.emplace_back(value);
    }

    static size_t content(char* data, size_t, size_t size, void* self) {
        return guarded(self, size, [&](Transfer& transfer) {
            if (size > transfer.limits_.maximumBytes - transfer.reply_.body.size())
                throw transportError(transfer.request_.url, transport_reason::kTooLarge);
            transfer.reply_.body.append(data, size);
        });
    }

    static int progress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent) {
        if (std::exchange(of(self).sent_, sent) != sent)
            of(self).lastProgress_ = Clock::now();
        return 0;
    }

    CURLcode perform() {
        const Clock::time_point end = Clock::now() + limits_.total;
        int running = 1;
        while (true) {
            errno = 0;
            const CURLMcode code = curl_multi_perform(multi_.get(), &running);
            ranOut_ = ranOut_ || errno == ENOMEM;
            require(code);
            if (running == 0)
                return resultOf();
            const Clock::time_point now = Clock::now();
            // Connecting has its own limit.
            const Clock::time_point idleEnd = isConnected_ ? lastProgress_ + limits_.idle : end;
            if (now >= end || now >= idleEnd)
                throw transportError(request_.url,
                                     now >= end ? transport_reason::kTooSlow : transport_reason::kSilent);
            constexpr std::chrono::milliseconds kLongestPause{1000};
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(std::min(end, idleEnd) - now);
            require(curl_multi_poll(multi_.get(), nullptr, 0,
                                    static_cast<int>(std::min(left, kLongestPause).count()), nullptr));
        }
    }

    CURLcode resultOf() {
        int left = 0;
        const CURLMsg* const message = curl_multi_info_read(multi_.get(), &left);
        return message ? message->data.result : CURLE_FAILED_INIT;
    }

    void require(CURLcode code) const {
        if (code == CURLE_OK)
            return;
        // If memory runs out while curl resolves a name, it says that there is no such host.
        if (ranOut_ && code == CURLE_COULDNT_RESOLVE_HOST)
            throw std::bad_alloc();
        // curl also says so of a header that is longer than it takes.
        constexpr uint64_t kLongestHeader = 100000;
        if (code == CURLE_OUT_OF_MEMORY && (sawWholeHead_ || received_ < kLongestHeader))
            throw std::bad_alloc();
        if (code == CURLE_OUT_OF_MEMORY)
            throw transportError(request_.url, transport_reason::kTooLarge);
        const std::string_view detail = detail_[0] != '\0' ? detail_.data() : curl_easy_strerror(code);
        throw transportError(request_.url, reasonOf(code), detail);
    }

    void require(CURLMcode code) const {
        if (code == CURLM_OUT_OF_MEMORY)
            throw std::bad_alloc();
        if (code != CURLM_OK)
            throw transportError(request_.url, transport_reason::kOther, curl_multi_strerror(code));
    }

    std::string_view reasonOf(CURLcode code) const {
        switch (code) {
        case CURLE_URL_MALFORMAT:
        case CURLE_UNSUPPORTED_PROTOCOL:
            // The latter can also mean a reply without a status line.
            return isConnected_ ? transport_reason::kHungUp : transport_reason::kNoAddress;
        case CURLE_COULDNT_RESOLVE_HOST:
            return transport_reason::kUnknownHost;
        case CURLE_COULDNT_CONNECT:
        case CURLE_OPERATION_TIMEDOUT:
            return transport_reason::kNoConnection;
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_PEER_FAILED_VERIFICATION:
            return transport_reason::kNoSecurity;
        case CURLE_GOT_NOTHING:
            return sawStatus_ ? transport_reason::kInterim : transport_reason::kHungUp;
        case CURLE_SEND_ERROR:
            return transport_reason::kHungUp;
        case CURLE_WEIRD_SERVER_REPLY:
            return transport_reason::kMalformed;
        case CURLE_PARTIAL_FILE:
        case CURLE_RECV_ERROR:
            return sawStatus_ ? transport_reason::kCutOff : transport_reason::kHungUp;
        default:
            return transport_reason::kOther;
        }
    }

    const HttpRequest& request_;
    HttpLimits limits_;
    uint64_t received_ = 0; ///< bytes in all, known once the connection is closed
    size_t headSize_ = 0;   ///< of all heads, those of interim replies included
    std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy_{curl_easy_init(), curl_easy_cleanup};
    std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi_{curl_multi_init(), curl_multi_cleanup};
    Headers headers_;
    HttpExchange reply_;
    std::vector<std::string> lengths_; ///< values of the Content-Length headers
    std::exception_ptr fault_;
    std::array<char, CURL_ERROR_SIZE> detail_{};
    Clock::time_point lastProgress_;
    curl_off_t sent_ = 0;
    bool isConnected_ = false;
    bool ranOut_ = false; ///< did the system say so while curl worked?
    bool sawStatus_ = false;
    bool sawWholeHead_ = false;
};

} // namespace

HttpExchange exchangeOnce(const HttpRequest& request, const HttpLimits& limits) {
    // Once for the process, before the first handle; curl keeps it until the process ends.
    static const bool isReady = [&] {
        const CURLcode code = curl_global_init(CURL_GLOBAL_DEFAULT);
        if (code == CURLE_OUT_OF_MEMORY)
            throw std::bad_alloc();
        if (code != CURLE_OK)
            throw transportError(request.url, transport_reason::kOther, curl_easy_strerror(code));
        return true; // if it raises, the next request tries again
    }();
    std::ignore = isReady;
    return Transfer(request, limits).run();
}

} // namespace norvakavlor::platform
