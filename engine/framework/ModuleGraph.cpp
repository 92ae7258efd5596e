#include "engine/framework/ModuleGraph.h"

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"

namespace tolvane {

ModuleGraph::ModuleGraph() = default;
ModuleGraph::~ModuleGraph() = default;

void ModuleGraph::setSampleRate(float rate) {
    sampleRate_ = rate;
    for (DspModule* m = moduleHead_; m; m = m->nextInGraph_) m->setSampleRate(rate);
}

void ModuleGraph::setBlockSize(int size) {
    blockSize_ = size;
    for (DspModule* m = moduleHead_; m; m = m->nextInGraph_) m->setBlockSize(size);
}

void ModuleGraph::setVoiceCount(int n) {
    voiceCount_ = n;
    for (PolyModule* p = containerHead_; p; p = p->nextInGraph_)
        if (p->rule() == kRuleGraphVoices) p->setVoices(n);
}

void ModuleGraph::link(DspModule* m) {
    m->prevInGraph_ = nullptr;
    m->nextInGraph_ = moduleHead_;
    if (moduleHead_) moduleHead_->prevInGraph_ = m;
    moduleHead_ = m;
    ++moduleCount_;
}

void ModuleGraph::unlink(DspModule* m) {
    if (m->prevInGraph_) m->prevInGraph_->nextInGraph_ = m->nextInGraph_; else moduleHead_ = m->nextInGraph_;
    if (m->nextInGraph_) m->nextInGraph_->prevInGraph_ = m->prevInGraph_;
    m->prevInGraph_ = m->nextInGraph_ = nullptr;
    --moduleCount_;
}

void ModuleGraph::link(PolyModule* p) {
    p->prevInGraph_ = nullptr;
    p->nextInGraph_ = containerHead_;
    if (containerHead_) containerHead_->prevInGraph_ = p;
    containerHead_ = p;
    ++containerCount_;
}

void ModuleGraph::unlink(PolyModule* p) {
    if (p->prevInGraph_) p->prevInGraph_->nextInGraph_ = p->nextInGraph_; else containerHead_ = p->nextInGraph_;
    if (p->nextInGraph_) p->nextInGraph_->prevInGraph_ = p->prevInGraph_;
    p->prevInGraph_ = p->nextInGraph_ = nullptr;
    --containerCount_;
}

}  // namespace tolvane
