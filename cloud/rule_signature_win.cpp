#include "cloud/rule_signature_win.h"

#include <windows.h>

#include <bcrypt.h>

#include <exception>

#include "base/handle_win.h"

namespace {

struct AlgorithmTraits {
    using Type = BCRYPT_ALG_HANDLE;
    static Type invalid() { return nullptr; }
    static void close(Type algorithm) { BCryptCloseAlgorithmProvider(algorithm, 0); }
};
using AlgorithmHandle = UniqueHandle<AlgorithmTraits>;

struct KeyTraits {
    using Type = BCRYPT_KEY_HANDLE;
    static Type invalid() { return nullptr; }
    static void close(Type key) { BCryptDestroyKey(key); }
};
using KeyHandle = UniqueHandle<KeyTraits>;

struct HashTraits {
    using Type = BCRYPT_HASH_HANDLE;
    static Type invalid() { return nullptr; }
    static void close(Type hash) { BCryptDestroyHash(hash); }
};
using HashHandle = UniqueHandle<HashTraits>;

using Sha256 = std::array<UCHAR, 32>;

bool IsFine(NTSTATUS status) {
    return status >= 0;
}

// The system's functions take what they only read through pointers that could write.
template <typename Bytes>
UCHAR* BytesOf(const Bytes& bytes) {
    return const_cast<UCHAR*>(reinterpret_cast<const UCHAR*>(bytes.data()));
}

bool HashOf(std::string_view bytes, Sha256& digest) {
    AlgorithmHandle algorithm;
    HashHandle hash;
    return IsFine(BCryptOpenAlgorithmProvider(algorithm.receive(), BCRYPT_SHA256_ALGORITHM, nullptr,
                                              0)) &&
           IsFine(BCryptCreateHash(algorithm.get(), hash.receive(), nullptr, 0, nullptr, 0, 0)) &&
           IsFine(
               BCryptHashData(hash.get(), BytesOf(bytes), static_cast<ULONG>(bytes.size()), 0)) &&
           IsFine(
               BCryptFinishHash(hash.get(), digest.data(), static_cast<ULONG>(digest.size()), 0));
}

// The system's own form of a public key: a header, and the two numbers.
struct PublicKeyBlob {
    BCRYPT_ECCKEY_BLOB header{BCRYPT_ECDSA_PUBLIC_P256_MAGIC, 32};
    EcdsaPair key;
};

}  // namespace

bool IsSignedBy(const EcdsaPair& key, std::string_view signedDocument) try {
    const auto rules = TakeSignature(signedDocument);
    Sha256 digest{};
    if (!rules || !HashOf(rules->document, digest)) return false;

    AlgorithmHandle algorithm;
    KeyHandle imported;
    PublicKeyBlob blob{.key = key};
    return IsFine(BCryptOpenAlgorithmProvider(algorithm.receive(), BCRYPT_ECDSA_P256_ALGORITHM,
                                              nullptr, 0)) &&
           IsFine(BCryptImportKeyPair(algorithm.get(), nullptr, BCRYPT_ECCPUBLIC_BLOB,
                                      imported.receive(), reinterpret_cast<UCHAR*>(&blob),
                                      sizeof(blob), 0)) &&
           IsFine(BCryptVerifySignature(
               imported.get(), nullptr, digest.data(), static_cast<ULONG>(digest.size()),
               BytesOf(rules->signature), static_cast<ULONG>(rules->signature.size()), 0));
} catch (const std::exception&) {
    return false;
}
