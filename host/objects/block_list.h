// The blocks of one call.
#pragma once

#include "host/objects/block.h"
#include "velmora/block_list.h"

#include <memory>
#include <vector>

namespace host {

/// Owns its blocks. A removed block is gone at once, so that a module that still uses it is found out.
class block_list final : public velmora::block_list {
public:
    std::size_t get_count() override { return blocks_.size(); }
    velmora::sample_block* get_item(std::size_t index) override { return blocks_.at(index).get(); }
    void remove_item(std::size_t index) override;
    void remove_all() override { blocks_.clear(); }
    velmora::sample_block* insert_item(std::size_t index, std::size_t samples_hint) override;

    /// Puts a block behind the last one.
    void append(block added) { blocks_.push_back(std::make_unique<block>(std::move(added))); }

    /// The block at `index`, as the host knows it.
    block& at(std::size_t index) { return *blocks_.at(index); }

private:
    std::vector<std::unique_ptr<block>> blocks_;
};

} // namespace host
