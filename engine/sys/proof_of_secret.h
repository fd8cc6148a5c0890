#ifndef ZEL_SYS_PROOF_OF_SECRET_H_
#define ZEL_SYS_PROOF_OF_SECRET_H_

#include "engine/sys/api.h"
#include "engine/sys/bytes.h"
#include "engine/sys/result.h"
#include "engine/sys/secrets.h"

/**
 * @file
 * How the process knows a password or PIN again that was right once, without keeping it:
 *
 *     Result<ProofOfSecret> accepted = ProofOfSecret::of(pin);
 *     if (!accepted) return accepted.failure();
 *     if (accepted.value().isOf(given)) letIn();
 */

namespace zel::sys {

/**
 * A ProofOfSecret is a secret's HMAC-SHA-256 under a random key of its own. Key and HMAC stand
 * together in locked memory as far as there is any, so that what is swapped out or dumped is
 * nothing to try guesses on; both are wiped when it goes. Two proofs of one secret are different.
 */
class ZEL_SYS_API ProofOfSecret {
 public:
  /** Any bytes, none too, may be a secret. ZELKM_ERR_CRYPTO (32) when OpenSSL refuses. */
  static Result<ProofOfSecret> of(ByteView secret);

  /** Takes as long for a secret that is nearly right as for any other of its length. */
  bool isOf(ByteView secret) const;

  /** False when the process has no locked memory left: whoever must not be guessed is not kept. */
  bool locked() const { return block_.locked(); }

 private:
  ProofOfSecret();

  ByteView key() const;
  ByteView code() const;

  SecretBlock block_; /**< the key, then the HMAC */
};

}  // namespace zel::sys

#endif  // ZEL_SYS_PROOF_OF_SECRET_H_
